#include "model/command_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "link/per_source.h"
#include "link/source_codes.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

class FakeResolutions : public ResolutionNames {
 public:
  [[nodiscard]] std::string ResolutionName(std::int32_t number) const override {
    if (number > 9) throw Fault("no such resolution");
    return "RES " + std::to_string(number);
  }
};

class Commands : public testing::Test, public LinkFixture {
 protected:
  Commands() {
    LoadInputNames(inputs);
    LoadProduct(23);
    LoadValueNames(names, 23, inputs, connectivity);
  }

  /// Sets the value that the list shows, for a per-source parameter that of source code 0x10.
  void Set(int address, std::int32_t value) {
    if (catalogue.IsPerSource(IndexOf(address))) {
      values.SetSourceValue(PerSourceSlot(address), 0, value);
    } else {
      values.SetParamValue(IndexOf(address).number, value);
    }
  }

  /// Text of a parameter's line, "-" where there is none.
  [[nodiscard]] std::string Line(int address) const {
    for (const CommandLine& line : commands.Lines()) {
      if (line.index == IndexOf(address)) return line.text;
    }
    return "-";
  }

  [[nodiscard]] std::vector<int> Shown(std::initializer_list<int> addresses) const {
    std::vector<int> shown(addresses);
    std::erase_if(shown, [this](int address) { return Line(address) == "-"; });
    return shown;
  }

  [[nodiscard]] int LastLine() const { return AddressOf(commands.Lines().back().index); }

  InputNames inputs;
  ValueNames& names = model.value_names;
  FakeResolutions resolutions;
  CommandList commands{model, resolutions};
};

TEST_F(Commands, LineTexts) {
  Fit({16});
  const std::tuple<int, std::int32_t, const char*> cases[] = {
      {131, 5, "Resolution[1,1024] : RES 5"},
      {182, -3, "Left shift[-120,120] : -3"},
      {266, 2, "Lock mode : Lock+Mix"},
      {193, 8, "RGB Type :  Auto"},
      {403, 1, "Fade : Fade In"},
      {329, 0x40, "Lock source : YC1"},
      {329, 99, "Lock source : CV1"},      // item 0 where no item has the number
      {278, 16, "Setup Source : ERROR1"},  // nothing was fitted when the lists were filled
      {257, 3, "Out std : ERROR2"},
      {184, 6, "De-interlace : ERROR"},
  };
  for (const auto& [address, value, text] : cases) {
    Set(address, value);
    EXPECT_EQ(Line(address), text);
  }
}

TEST_F(Commands, FaultEndsTheListButNoMissingName) {
  catalogue.AddParameter(140, "", 0, 0, 1, false);
  catalogue.AddParameter(141, "last", 0, 0, 1, false);
  EXPECT_EQ(Line(140), "-");
  Set(184, 99);
  EXPECT_EQ(LastLine(), 141);  // no fault where it does not apply
  Fit({16});
  EXPECT_EQ(LastLine(), 193);
  Set(149, 16);  // "Flip" has 16 items at most
  EXPECT_EQ(LastLine(), 146);
  Set(131, 10);
  EXPECT_EQ(LastLine(), 130);
}

TEST_F(Commands, AspectAndShrinkEnableHideScales) {
  const std::tuple<std::int32_t, std::int32_t, std::vector<int>> cases[] = {
      {0, 0, {134}},
      {0, 1, {134, 135}},
      {1, 1, {259, 260, 261, 262}},
      {2, 1, {134, 135, 259, 260, 261, 262}}};  // neither simple nor advanced
  for (const auto& [aspect, shrink_enable, shown] : cases) {
    Set(258, aspect);
    Set(398, shrink_enable);
    EXPECT_EQ(Shown({134, 135, 259, 260, 261, 262}), shown) << aspect;
  }
}

TEST_F(Commands, PerSourceParametersFollowTheSetupSource) {
  const std::tuple<std::int32_t, std::int16_t, std::vector<int>> cases[] = {
      {0, 16, {182, 163, 193, 197}},   // read as 16
      {31, 31, {182, 163, 193, 197}},  // the last RGB source
      {32, 32, {182, 163, 138, 185}},  // the first video source
      {17, 17, {}},                    // not fitted
  };
  Fit({16, 31, 32});
  for (const auto& [setup_source, written_to, shown] : cases) {
    Set(278, setup_source);
    EXPECT_EQ(Shown({182, 163, 193, 197, 138, 185}), shown) << setup_source;
    EXPECT_EQ(commands.WriteSource(IndexOf(182)), written_to);
  }
  Set(278, 256);
  EXPECT_THROW((void)commands.IsCommandApplicable(IndexOf(182)), Fault);
  EXPECT_EQ(commands.WriteSource(IndexOf(182)), 256);
}

TEST_F(Commands, StepsAndTypedNumbersStayInRange) {
  const std::tuple<std::int32_t, int, std::int32_t> steps[] = {
      {99, 1, 100},
      {std::numeric_limits<std::int32_t>::max(), 1, 100},
      {std::numeric_limits<std::int32_t>::min(), -1, -120}};
  for (const auto& [value, step, stepped] : steps) {
    Set(222, value);
    EXPECT_EQ(commands.SteppedValue(IndexOf(222), step), stepped) << value;
  }
  constexpr int kRefused = -999;
  const std::pair<const char*, int> typed[] = {
      {"100", 100}, {"100.4", kRefused}, {"-0.4", kRefused}, {"49.5", 50},
      {"48.5", 48}, {"&H20", 32},        {" 7 x", 7},        {"", 0}};
  for (const auto& [text, expected] : typed) {
    std::int32_t value = kRefused;
    EXPECT_EQ(commands.ReadTyped(IndexOf(159), text, value), expected != kRefused) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

}  // namespace
}  // namespace kalde2
