#include "files/clone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;

struct CloneTest : ::testing::Test, LinkFixture {
  CloneTest() { port.on_write = std::ref(unit); }

  /// Five parameters of every scope, added in another order than the catalogue's.
  void LoadSmallCatalogue() {
    catalogue.BeginBuild();
    for (const std::int16_t address :
         std::initializer_list<std::int16_t>{278, 222, 193, 138, 130}) {
      catalogue.AddParameter(address, "", 0, 0, 255, false);
    }
  }

  EchoUnit unit;
  CloneTransfer clone{model, link, progress};
};

TEST_F(CloneTest, ReadsInCatalogueOrderWhateverTheUnitAnswers) {
  LoadSmallCatalogue();
  Fit({0, 3, 255});
  unit.values["104100C1"] = "FFFFFD";
  unit.values["304100DE"] = "000009";
  port.on_write = [this](std::string_view frame) -> std::string {
    if (frame == "F841041008257\r") return "F0000\r";
    return frame == "F843041008A7F\r" ? "" : unit(frame);
  };
  clone.CloneRead();
  EXPECT_THAT(port.written,
              ElementsAre("F841041008257\r",                                        // refused
                          "F843041008A7F\r", "F843041008A7F\r", "F843041008A7F\r",  // silent
                          "F840041008A4F\r",  // a source without a code is asked for as code 0
                          "F84104100C196\r", "F84104100DEB3\r", "F84304100DED3\r",
                          "F84004100DEA3\r", "F8410410116EC\r"));
  EXPECT_EQ(values.SourceValue(8, 0), -3);
  EXPECT_EQ(values.SourceValue(13, 3), 9);

  ASSERT_EQ(progress.log.size(), 3U + 284U + 1U);
  progress.log.resize(4);
  EXPECT_THAT(progress.log,
              ElementsAre("begin", "caption Reading Parameters", "range 0 283", "value 0"));
  EXPECT_FALSE(progress.shown);
}

TEST_F(CloneTest, WritesEachSourcesColumnAndKeepsTheSelectedSource) {
  LoadSmallCatalogue();
  Fit({0, 3});
  values.SetParamValue(0, 7);
  values.SetParamValue(148, 0x11);
  values.SetSourceValue(0, 3, 5);
  values.SetSourceValue(8, 0, -3);
  values.SetSourceValue(13, 0, 1);
  values.SetSourceValue(13, 3, 2);
  clone.CloneWrite();
  EXPECT_THAT(port.written,
              ElementsAre("F0410410082000007DE\r", "F043041008A00000504\r", "F04104100C1FFFFFD11\r",
                          "F04104100DE00000134\r", "F04304100DE00000255\r",
                          // The setup source is the last one that was written.
                          "F04104101160000309C\r"));
  EXPECT_EQ(values.ParamValue(148), 0x11);
  EXPECT_THAT(progress.log, ::testing::Contains("caption Writing Parameters"));
  EXPECT_FALSE(progress.shown);
}

}  // namespace
}  // namespace kalde2
