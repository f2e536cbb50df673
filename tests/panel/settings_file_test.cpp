#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "panel/settings_file.h"
#include "tests/support/fake_dialogs.h"
#include "tests/support/fake_link.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Box = FakeBoxes::Box;

Box Malformed(int line, std::string_view expected) {
  return {"\"panel.txt\": line " + std::to_string(line) + ": expected an address" +
              std::string(expected),
          BoxIcon::kCritical, ""};
}
constexpr std::string_view kGeneral = " (a whole number of 16 bits), a comma and a value (32 bits)";
constexpr std::string_view kSource =
    " and a source code (whole numbers of 16 bits) and a value (32 bits), separated by commas";

struct Panel : LinkFixture {
  Panel() { dialogs.name = "panel.txt"; }

  FakeBoxes boxes;
  FakeFileDialogs dialogs;
  SettingsFile settings{model, boxes, dialogs};
};

struct SettingsFileTest : ::testing::Test {
  TempFolder folder;
  Panel panel;
};

TEST_F(SettingsFileTest, SavesEveryLineToTheLetter) {
  // Added out of order: the file has the catalogue's.
  panel.catalogue.BeginBuild();
  for (const std::int16_t address : std::initializer_list<std::int16_t>{413, 193, 182, 138, 131}) {
    panel.catalogue.AddParameter(address, "", 0, 0, 255, false);
  }
  panel.Fit({0, 1, 3, 9});
  panel.values.SetParamValue(1, -3);
  panel.values.SetParamValue(8, 4);
  panel.values.SetParamValue(283, 2147483647);
  panel.values.SetSourceValue(0, 3, 40000);
  panel.values.SetSourceValue(0, 0, -2);
  panel.values.SetSourceValue(1, 0, 40000);
  panel.values.SetSourceValue(1, 1, 32767);
  panel.values.SetSourceValue(1, 3, -32768);
  panel.values.SetSourceValue(8, 0, 1);
  panel.values.SetSourceValue(8, 1, 2);
  WriteText("panel.txt", "an older and longer file, gone unasked" + std::string(999, '.'));
  panel.settings.SaveSettingsFile(-1);
  EXPECT_EQ(ReadText("panel.txt"),
            "[1.0]\r\n"
            "[DEVICE]\r\n"
            "-1\r\n"
            "[GENERAL1A]\r\n"
            "131,-3\r\n"
            "138, 4\r\n"
            "182, 0\r\n"
            "193, 0\r\n"
            "413, 2147483647\r\n"
            "[SOURCE]\r\n"
            "138, 48 ,0\r\n"   // 40000 does not fit, and there is no line before
            "138, 0 ,-2\r\n"   // a source without a code: the first row
            "182, 16 ,-2\r\n"  // 40000 does not fit: the line before again
            "182, 17 ,32767\r\n"
            "182, 48 ,-32768\r\n"
            "182, 0 ,-32768\r\n"
            "193, 16 ,1\r\n"
            "193, 17 ,2\r\n");
  EXPECT_EQ(panel.values.ParamValue(148), 17);
  EXPECT_THAT(panel.boxes.shown, ElementsAre(Box{"Settings saved to file", BoxIcon::kNone, ""}));
  EXPECT_THAT(panel.port.written, IsEmpty());
}

TEST_F(SettingsFileTest, AsksForTheFileAndLeavesItWhereThatIsCancelled) {
  panel.dialogs.name.reset();
  panel.settings.LoadSettingsFile();
  panel.settings.SaveSettingsFile(22);
  EXPECT_THAT(panel.boxes.shown, IsEmpty());
  EXPECT_TRUE(std::filesystem::is_empty("."));
  EXPECT_EQ(panel.dialogs.opened.at(0).filter_label, "K2 (*.txt)");
  const FileDialogSetup& save = panel.dialogs.saved.at(0);
  EXPECT_TRUE(save.title == "Save K2 file" && save.filter_label == "K2 file (*.txt)");
  EXPECT_EQ(save.default_extension, ".txt");
}

TEST_F(SettingsFileTest, AppliesTheLinesOfAFile) {
  const std::string head = "[1.0]\r\n[DEVICE]\r\n22\r\n[GENERAL1A]\r\n";
  const std::string source_head = head + "[SOURCE]\r\n";
  const std::string commas(1'000'000, ',');
  struct {
    std::string text;
    std::vector<std::string> applied;
    Box box = {"Loaded values from file", BoxIcon::kNone, ""};
  } const cases[] = {
      {head + "130, 0\r\n131,-3\r\n[SOURCE]\r\n138, 16 ,5\r\n138, 17 ,-2\r\n",
       {"value 130 0", "value 131 -3", "value 138 5", "value 138 -2"}},
      {"[1.1]\r\n[GENERAL1A]\r\n130\r\n", {}},
      {"[1.0]\r\n130,1\r\n[SOURCE]\r\nx\r\n\r\n", {}},  // no general section
      {head + " 130 ,  +7  ,9,x\r\n131, -8 ", {"value 130 7", "value 131 -8"}},
      {"[1.0]\n[GENERAL1A]\r130,1\n131,2\r", {"value 130 1", "value 131 2"}},
      {head + "5,1\r\n-32768,1\r\n131,-2147483648\r\n", {"value 131 -2147483648"}},
      {"[1.0]\r\n" + commas + "\r\n[GENERAL1A]\r\n130,7", {"value 130 7"}},
      // Longer than any line is read: what would be left of it is not what stands there.
      {head + "130," + std::string(1019, '0') + "7\r\n", {"value 130 7"}},
      {head + "130," + std::string(1020, '0') + "7\r\n", {}, Malformed(5, kGeneral)},
      {source_head + "138,16,1" + commas, {}, Malformed(6, kSource)},
      {head + "130,1\r\n\r\n131,2\r\n", {"value 130 1"}, Malformed(6, kGeneral)},
      {head + "130,1.5\r\n", {}, Malformed(5, kGeneral)},
      {head + "32768,1\r\n", {}, Malformed(5, kGeneral)},
      {head + "130,2147483648\r\n", {}, Malformed(5, kGeneral)},
      {source_head + "138,40000,1\r\n", {}, Malformed(6, kSource)},
      {source_head + "138,16,1\r\n[SOURCE]\r\n", {"value 138 1"}, Malformed(7, kSource)},
  };
  for (const auto& [text, applied, box] : cases) {
    SCOPED_TRACE(text.substr(0, 80));
    WriteText("panel.txt", text);
    Panel fresh;
    fresh.LoadProduct(35);
    fresh.settings.LoadSettingsFile();
    std::erase(fresh.display.log, "refresh on");
    EXPECT_EQ(fresh.display.log, applied);
    EXPECT_THAT(fresh.boxes.shown, ElementsAre(box));
    EXPECT_THAT(fresh.port.written, IsEmpty());
  }
}

TEST_F(SettingsFileTest, NeitherReadsNorReplacesWhatIsNoFile) {
  ASSERT_EQ(mkfifo("B\xC3\xBChne\xE2\x82\xAC.txt", 0600), 0);
  panel.dialogs.name = "./B\xC3\xBChne\xE2\x82\xAC.txt";
  panel.settings.SaveSettingsFile(22);
  EXPECT_TRUE(std::filesystem::is_fifo(*panel.dialogs.name));
  panel.settings.LoadSettingsFile();
  EXPECT_EQ(
      panel.boxes.shown.back(),
      (Box{"\"B\xC3\xBChne\xE2\x82\xAC.txt\": the file cannot be opened", BoxIcon::kCritical, ""}));
}

}  // namespace
}  // namespace kalde2
