#include "model/connectivity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/text_functions.h"
#include "model/input_names.h"
#include "model/value_names.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ConnectivityReading : public testing::Test, public LinkFixture {
 protected:
  ConnectivityReading() {
    for (std::int16_t source = 0; source < kSources; ++source) Report(source, "000000", "0000FF");
    port.on_write = std::ref(unit);
  }

  void Report(std::int16_t source, const char* code, const char* name) {
    const std::string hex = TwoHexDigits(source);
    unit.values[hex + "410194"] = code;
    unit.values[hex + "410195"] = name;
  }

  [[nodiscard]] std::vector<int> Fitted() const {
    std::vector<int> fitted;
    for (int source = 0; source < kSources; ++source) {
      if (connectivity.IsFitted(source)) fitted.push_back(source);
    }
    return fitted;
  }

  const SourceInfoRecord& Info(std::size_t source) { return connectivity.SourceInfo[source]; }

  EchoUnit unit;
  ConnectivityReader reader{connectivity, link, progress};
};

TEST_F(ConnectivityReading, SilenceLooksFittedAndRefusalRepeatsTheLastAnswer) {
  Report(17, "000007", "000031");
  Report(90, "0000FE", "0000FE");
  Report(91, "000001", "000001");  // never asked for
  port.on_write = [this](std::string_view frame) -> std::string {
    const std::string_view fields = frame.substr(3, 8);
    if (fields == "30410195") return "";
    if (fields == "12410194" || fields == "12410195") return "F0000\r";
    return unit(frame);
  };
  Fit({5, 16, 255});
  const TransferReport report = reader.ReadConnectivity(35);
  EXPECT_TRUE(report.is_complete);
  EXPECT_FALSE(link.DetectionInProgress());
  EXPECT_THAT(display.log, IsEmpty());  // no reply is applied
  EXPECT_EQ(report.asked - report.answered, 3);
  EXPECT_EQ(report.skipped.back().outcome, Outcome::kSilent);
  EXPECT_EQ(report.skipped.back().source, 48);
  EXPECT_THAT(Fitted(), ElementsAre(17, 18, 48, 90, 255)) << "the last is never reset";
  EXPECT_TRUE(Info(17).SourceCode == 7 && Info(17).NameIndex == 49);
  EXPECT_TRUE(Info(18).SourceCode == 49 && Info(18).NameIndex == 49);
  EXPECT_EQ(Info(48).NameIndex, 0);
}

TEST_F(ConnectivityReading, EndsAtAnAnswerThatDoesNotFitWithTheSourceAsItWasReset) {
  Report(17, "7FFFFF", "000031");  // decoded, a value below all 16-bit numbers
  reader.ReadConnectivity(35);
  EXPECT_THAT(port.written, SizeIs(4)) << "both are asked for first";
  EXPECT_THAT(Fitted(), IsEmpty());
  EXPECT_TRUE(Info(17).SourceCode == 0 && Info(17).NameIndex == 255);
  EXPECT_FALSE(link.DetectionInProgress());
  EXPECT_TRUE(progress.shown);
}

class Names : public testing::Test, public LinkFixture {
 protected:
  Names() { LoadInputNames(inputs); }

  void FitNamed(std::initializer_list<int> sources) {
    connectivity = {};
    Fit(sources);
    for (const int source : sources) {
      connectivity.SourceInfo[static_cast<std::size_t>(source)].NameIndex =
          static_cast<std::int16_t>(source);
    }
  }

  void Load(std::int32_t type) { LoadValueNames(names, type, inputs, connectivity); }

  /// The items of a list up to its last non-empty one.
  [[nodiscard]] std::string Joined(int list) const {
    std::string joined;
    for (int item = 0; item < ValueNames::kItems; ++item) joined += names.Item(list, item) + "|";
    return joined.substr(0, joined.find_last_not_of('|') + 1);
  }

  InputNames inputs;
  ValueNames names;
};

TEST_F(Names, InputsAndItemsAreTheUnitsOwnWording) {
  const std::pair<std::size_t, const char*> cases[] = {
      {0, "RGB 1"},  {15, "RGB 16"},    {16, "YUV 1"},   {17, "YUV2"},
      {18, "YUV 3"}, {176, "S2-SDI 1"}, {223, "OUT 16"}, {224, "None"},
      {253, "None"}, {254, ""},         {255, ""}};
  for (const auto& [index, name] : cases) EXPECT_EQ(inputs[index], name) << index;
  Load(35);
  const std::pair<int, const char*> lists[] = {
      {2, "Normal|Auto|Film 3:2|Low|Med|High"},
      {10, "Off|Med.|High|Auto"},
      {14, "RGBHV|RGBs|RGsB|YUV|tlYUV|CV/YC|D-RGB|tlRGB| Auto|  N/A|A-RGB|D-YUV|A-YUV"},
      {16, "Fade Out, -1|Fade In, 1"},
      {19, "RGBHV| RGBS| RGsB|  YUV|tlYUV"}};
  for (const auto& [list, items] : lists) EXPECT_EQ(Joined(list), items) << list;
}

TEST_F(Names, ItemsOfAnEarlierProductStayBehindTheNewOnes) {
  FitNamed({16, 17, 48});
  Load(35);
  FitNamed({64});
  Load(35);
  for (const int list : {5, 7, 20}) EXPECT_EQ(Joined(list), "YC 1,64|YUV2,17|CV 1,48");
  Load(22);
  EXPECT_EQ(Joined(7), "RGB1,&H10|YUV2,17|CV 1,48");
}

}  // namespace
}  // namespace kalde2
