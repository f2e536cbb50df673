#include "model/command_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "link/source_codes.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using testing::ElementsAre;

class FakeResolutions : public ResolutionNames {
 public:
  [[nodiscard]] std::string ResolutionName(std::int32_t number) const override {
    if (number > 9) throw Fault("no such resolution");
    return "RES " + std::to_string(number);
  }
};

constexpr int At(int address) {
  return address - kFirstAddress;
}

class Commands : public testing::Test, public LinkFixture {
 protected:
  Commands() {
    LoadInputNames(inputs);
    Detect(23);
  }

  void Detect(std::int32_t type) {
    LoadProduct(type);
    LoadValueNames(names, type, inputs, connectivity);
  }

  /// Sets the value that the list shows, for a per-source parameter that of source code 0x10.
  void Set(int address, std::int32_t value) {
    if (catalogue.IsPerSource(At(address))) {
      values.SetSourceValue(PerSourceSlot(address), 0, value);
    } else {
      values.SetParamValue(At(address), value);
    }
  }

  /// Text of a parameter's line, "-" where there is none.
  [[nodiscard]] std::string Line(int address) const {
    for (const CommandLine& line : commands.Lines()) {
      if (line.index == At(address)) return line.text;
    }
    return "-";
  }

  [[nodiscard]] std::vector<int> Shown(std::initializer_list<int> addresses) const {
    std::vector<int> shown;
    for (const int address : addresses) {
      if (Line(address) != "-") shown.push_back(address);
    }
    return shown;
  }

  InputNames inputs;
  ValueNames names;
  FakeResolutions resolutions;
  CommandList commands{catalogue, names, connectivity, values, resolutions};
};

TEST_F(Commands, LineTexts) {
  Fit({16});
  const std::tuple<int, std::int32_t, const char*> cases[] = {
      {131, 5, "Resolution[1,1024] : RES 5"},
      {159, 50, "Zoom Pan H[0,100] : 50"},
      {133, -7, "Sch Phase[-180,180] : -7"},
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

TEST_F(Commands, LinesFollowTheProductAndSkipWhatHasNoName) {
  Set(258, 1);
  std::vector<int> expected;
  for (const int index : catalogue.ActiveParams()) {
    const bool hidden = index == At(134) || index == At(135) || catalogue.IsPerSource(index);
    if (!hidden) expected.push_back(index);
  }
  catalogue.AddParameter(140, "", 0, "0", "1", false);
  catalogue.AddParameter(141, "last", 0, "0", "1", false);
  expected.push_back(At(141));
  std::vector<int> shown;
  for (const CommandLine& line : commands.Lines()) shown.push_back(line.index);
  EXPECT_EQ(shown, expected);
}

TEST_F(Commands, FaultEndsTheList) {
  Set(149, 16);  // "Flip" has 16 items at most
  EXPECT_EQ(commands.Lines().back().index, At(146));
  Set(131, 10);
  EXPECT_EQ(commands.Lines().back().index, At(130));
  Set(131, 0);
  Set(149, 0);
  Set(184, 99);
  EXPECT_EQ(commands.Lines().back().index, At(409));  // no fault where it does not apply
  Fit({16});
  EXPECT_EQ(commands.Lines().back().index, At(193));
}

TEST_F(Commands, AspectAndShrinkEnableHideScales) {
  const std::initializer_list<int> scales = {134, 135, 259, 260, 261, 262};
  Set(398, 0);
  Set(258, 0);
  EXPECT_THAT(Shown(scales), ElementsAre(134));
  Set(398, 1);
  EXPECT_THAT(Shown(scales), ElementsAre(134, 135));
  Set(258, 1);
  EXPECT_THAT(Shown(scales), ElementsAre(259, 260, 261, 262));
  Set(258, 2);  // neither simple nor advanced
  EXPECT_THAT(Shown(scales), ElementsAre(134, 135, 259, 260, 261, 262));
}

TEST_F(Commands, PerSourceParametersFollowTheSetupSource) {
  const std::initializer_list<int> addresses = {182, 163, 193, 197, 138, 185};
  const std::pair<std::int32_t, std::vector<int>> cases[] = {
      {0, {182, 163, 193, 197}},   // read as 16
      {31, {182, 163, 193, 197}},  // the last RGB source
      {32, {182, 163, 138, 185}},  // the first video source
      {17, {}},                    // not fitted
  };
  Fit({16, 31, 32});
  for (const auto& [setup_source, shown] : cases) {
    Set(278, setup_source);
    EXPECT_EQ(Shown(addresses), shown) << setup_source;
    EXPECT_TRUE(commands.IsCommandApplicable(At(145)));
  }
  Set(278, 256);
  EXPECT_THROW((void)commands.IsCommandApplicable(At(182)), Fault);
  EXPECT_EQ(commands.WriteSource(At(182)), 256);
  Set(278, 0);
  EXPECT_EQ(commands.WriteSource(At(182)), 0x10);
  Set(278, 32);
  EXPECT_EQ(commands.WriteSource(At(182)), 32);
  EXPECT_EQ(commands.WriteSource(At(159)), 0x10);
}

TEST_F(Commands, ChoicesOfAListParameter) {
  const auto choices = [this](int address) {
    std::string text;
    for (const ValueItem& item : commands.Choices(At(address))) {
      text += item.label + "=" + std::to_string(item.data) + " ";
    }
    return text;
  };
  EXPECT_EQ(choices(329), "CV1=48 YC1=64 ");
  EXPECT_EQ(choices(403), "Fade Out=-1 Fade In=1 ");
  EXPECT_EQ(choices(266), "Off=0 Lock=0 Lock+Mix=0 ");
  EXPECT_EQ(choices(278), "");

  const std::tuple<int, std::int32_t, int> cases[] = {
      {329, 64, 1}, {329, 1, -1}, {266, 2, 2}, {266, 3, -1}, {266, -1, -1}};
  for (const auto& [address, value, choice] : cases) {
    Set(address, value);
    EXPECT_EQ(commands.CurrentChoice(At(address)), choice) << address << " " << value;
  }
}

TEST_F(Commands, StepsStayInRange) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const std::tuple<std::int32_t, int, std::int32_t> cases[] = {
      {99, 1, 100},     {100, 1, 100},   {101, 1, 100}, {101, -1, 100},  {-119, -1, -120},
      {-120, -1, -120}, {-500, 1, -120}, {0, -1, -1},   {kMost, 1, 100}, {kLeast, -1, -120}};
  for (const auto& [value, step, stepped] : cases) {
    Set(222, value);
    EXPECT_EQ(commands.SteppedValue(At(222), step), stepped) << value;
  }
}

TEST_F(Commands, TypedNumbers) {
  constexpr int kRefused = -999;
  const std::tuple<int, const char*, int> cases[] = {
      {159, "1001", kRefused}, {159, "100", 100},   {159, "100.4", kRefused},
      {159, "-1", kRefused},   {159, "49.5", 50},   {159, "48.5", 48},
      {159, "&H20", 32},       {159, " 7 x", 7},    {159, "", 0},
      {131, "", kRefused},     {131, "1024", 1024}, {222, "101", kRefused},
      {222, "-120", -120}};
  for (const auto& [address, text, expected] : cases) {
    std::int32_t value = kRefused;
    EXPECT_EQ(commands.ReadTyped(At(address), text, value), expected != kRefused) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

}  // namespace
}  // namespace kalde2
