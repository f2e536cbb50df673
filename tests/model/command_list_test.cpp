#include "model/command_list.h"

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

  [[nodiscard]] int LastLine() const { return AddressOf(commands.Lines().back().index); }

  InputNames inputs;
  ValueNames& names = model.value_names;
  FakeResolutions resolutions;
  CommandList commands{model, resolutions};
};

TEST_F(Commands, NoNameNoLine) {
  catalogue.AddParameter(140, "", 0, 0, 1, false);
  catalogue.AddParameter(141, "last", 0, 0, 1, false);
  EXPECT_EQ(Line(140), "-");
  EXPECT_EQ(LastLine(), 141);
  Set(131, 10);
  EXPECT_EQ(LastLine(), 130) << "a fault ends the list";
}

TEST_F(Commands, StepsStayInRange) {
  const std::tuple<std::int32_t, int, std::int32_t> steps[] = {
      {99, 1, 100},
      {std::numeric_limits<std::int32_t>::max(), 1, 100},
      {std::numeric_limits<std::int32_t>::min(), -1, -120}};
  for (const auto& [value, step, stepped] : steps) {
    Set(222, value);
    EXPECT_EQ(commands.SteppedValue(IndexOf(222), step), stepped) << value;
  }
}

}  // namespace
}  // namespace kalde2
