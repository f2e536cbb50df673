#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "files/mod_FileHandler.h"
#include "tests/support/fake_link.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Box = FakeBoxes::Box;

const Box kSaved{"Settings saved to file", BoxIcon::kNone, ""};
const Box kLoaded{"Loaded values from file", BoxIcon::kNone, ""};

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

  SettingsFile settings{catalogue, connectivity, values, link, boxes, dialogs};

  void AddParameters(std::initializer_list<std::int16_t> addresses) {
    catalogue.BeginBuild();
    for (const std::int16_t address : addresses) {
      catalogue.AddParameter(address, "", 0, "0", "255", false);
    }
  }

  /// What the loaded lines did to the window.
  [[nodiscard]] std::vector<std::string> Applied() const {
    std::vector<std::string> applied = display.log;
    std::erase(applied, "refresh on");
    return applied;
  }
};

struct SettingsFileTest : ::testing::Test {
  TempFolder folder;
  Panel panel;
};

TEST_F(SettingsFileTest, SavesEveryLineToTheLetter) {
  // Added out of order: the file has the catalogue's.
  panel.AddParameters({413, 193, 182, 138, 131, 130});
  panel.Fit({0, 1, 3, 9});
  panel.values.SetParamValue(0, 0);
  panel.values.SetParamValue(1, -3);
  panel.values.SetParamValue(8, 4);
  panel.values.SetParamValue(283, 2147483647);
  panel.values.SetSourceValue(0, 3, 6);
  panel.values.SetSourceValue(0, 0, -2);
  panel.values.SetSourceValue(1, 0, 40000);
  panel.values.SetSourceValue(1, 1, 32767);
  panel.values.SetSourceValue(1, 3, -32768);
  panel.values.SetSourceValue(8, 0, 1);
  panel.values.SetSourceValue(8, 1, 2);
  WriteText("panel.txt",
            "an older and longer file, gone without a question" + std::string(999, '.'));
  panel.settings.SaveSettingsFile(22);
  EXPECT_EQ(ReadText("panel.txt"),
            "[1.0]\r\n"
            "[DEVICE]\r\n"
            "22\r\n"
            "[GENERAL1A]\r\n"
            "130, 0\r\n"
            "131,-3\r\n"
            "138, 4\r\n"
            "182, 0\r\n"
            "193, 0\r\n"
            "413, 2147483647\r\n"
            "[SOURCE]\r\n"
            "138, 48 ,6\r\n"
            "138, 0 ,-2\r\n"   // a source without a code: the first row
            "182, 16 ,-2\r\n"  // 40000 does not fit: the line before again
            "182, 17 ,32767\r\n"
            "182, 48 ,-32768\r\n"
            "182, 0 ,-32768\r\n"
            "193, 16 ,1\r\n"
            "193, 17 ,2\r\n");
  EXPECT_EQ(panel.values.ParamValue(148), 17);
  EXPECT_THAT(panel.boxes.shown, ElementsAre(kSaved));
  EXPECT_THAT(panel.port.written, IsEmpty());
}

TEST_F(SettingsFileTest, SavesWithoutSourcesOrWithAFirstValueThatDoesNotFit) {
  panel.AddParameters({182});
  panel.settings.SaveSettingsFile(-1);
  EXPECT_EQ(ReadText("panel.txt"),
            "[1.0]\r\n[DEVICE]\r\n-1\r\n[GENERAL1A]\r\n182, 0\r\n[SOURCE]\r\n");
  panel.Fit({4});
  panel.values.SetSourceValue(1, 4, 40000);
  panel.settings.SaveSettingsFile(35);
  EXPECT_EQ(ReadText("panel.txt"),
            "[1.0]\r\n[DEVICE]\r\n35\r\n[GENERAL1A]\r\n182, 0\r\n[SOURCE]\r\n182, 49 ,0\r\n");
}

TEST_F(SettingsFileTest, ReportsSuccessForAFileThatCannotBeSaved) {
  std::filesystem::create_directory("panel.txt");
  panel.settings.SaveSettingsFile(22);
  EXPECT_TRUE(std::filesystem::is_directory("panel.txt"));
  panel.dialogs.name = "missing/panel.txt";
  panel.settings.SaveSettingsFile(22);
  EXPECT_FALSE(std::filesystem::exists("missing"));
  EXPECT_THAT(panel.boxes.shown, ElementsAre(kSaved, kSaved));
}

TEST_F(SettingsFileTest, NeitherReadsNorReplacesAPipe) {
  ASSERT_EQ(mkfifo("panel.txt", 0600), 0);
  panel.settings.SaveSettingsFile(22);
  EXPECT_TRUE(std::filesystem::is_fifo("panel.txt"));
  panel.settings.LoadSettingsFile();
  EXPECT_EQ(panel.boxes.shown.back().icon, BoxIcon::kCritical);
}

TEST_F(SettingsFileTest, AsksForTheFile) {
  panel.dialogs.name.reset();
  panel.settings.LoadSettingsFile();
  panel.settings.SaveSettingsFile(22);
  EXPECT_THAT(panel.boxes.shown, IsEmpty());
  EXPECT_TRUE(std::filesystem::is_empty("."));

  const auto parts = [](const FileDialogSetup& setup) {
    return std::vector<std::string_view>{setup.title, setup.filter_label, setup.filter_pattern,
                                         setup.default_extension};
  };
  EXPECT_THAT(parts(panel.dialogs.opened.at(0)), ElementsAre("Open", "K2 (*.txt)", "*.txt", ""));
  EXPECT_THAT(parts(panel.dialogs.saved.at(0)),
              ElementsAre("Save K2 file", "K2 file (*.txt)", "*.txt", ".txt"));

  panel.dialogs.name = std::string("  a name.txt  \0rest", 19);
  panel.settings.SaveSettingsFile(22);
  panel.dialogs.name = " panel.txt ";
  panel.settings.SaveSettingsFile(22);
  EXPECT_TRUE(std::filesystem::exists("panel.txt"));
  EXPECT_TRUE(std::filesystem::exists("a name.txt  "));  // blanks before a NUL are the name's own
}

TEST_F(SettingsFileTest, AppliesTheLinesOfAFile) {
  const std::string head = "[1.0]\r\n[DEVICE]\r\n22\r\n[GENERAL1A]\r\n";
  const std::string commas(1'000'000, ',');
  const std::string nul(1, '\0');
  struct {
    const char* name;
    std::string text;
    std::vector<std::string> applied;
    Box box;
  } const cases[] = {
      {"whole",
       head + "130, 0\r\n131,-3\r\n[SOURCE]\r\n138, 16 ,5\r\n138, 17 ,-2\r\n",
       {"value 130 0", "value 131 -3", "value 138 5", "value 138 -2"},
       kLoaded},
      {"empty", "", {}, kLoaded},
      {"blank behind the version", "[1.0] \r\n[GENERAL1A]\r\n130, 1\r\n", {}, kLoaded},
      {"other version", "[1.1]\r\n[GENERAL1A]\r\n130\r\n", {}, kLoaded},
      {"no general section", "[1.0]\r\n130,1\r\n[SOURCE]\r\nx\r\n\r\n", {}, kLoaded},
      {"no source section", head + "130, 1", {"value 130 1"}, kLoaded},
      {"blanks, signs and further fields",
       head + " 130 ,  +7  ,9,x\r\n131, -8 \r\n",
       {"value 130 7", "value 131 -8"},
       kLoaded},
      {"other line ends",
       "[1.0]\n[GENERAL1A]\r130,1\n131,2\r",
       {"value 130 1", "value 131 2"},
       kLoaded},
      {"limits",
       head + "130,-2147483648\r\n131,2147483647\r\n",
       {"value 130 -2147483648", "value 131 2147483647"},
       kLoaded},
      {"addresses that no product has",
       head + "5,1\r\n-32768,1\r\n131,2\r\n",
       {"value 131 2"},
       kLoaded},
      {"a million commas",
       "[1.0]\r\n" + commas + "\r\n[GENERAL1A]\r\n130,7" + commas + "\r\n",
       {"value 130 7"},
       kLoaded},
      {"blank line", head + "130,1\r\n\r\n131,2\r\n", {"value 130 1"}, Malformed(6, kGeneral)},
      {"one field", head + "130\r\n", {}, Malformed(5, kGeneral)},
      {"no number", head + "130,x\r\n", {}, Malformed(5, kGeneral)},
      {"fraction", head + "130,1.5\r\n", {}, Malformed(5, kGeneral)},
      {"two signs", head + "130,+-5\r\n", {}, Malformed(5, kGeneral)},
      {"wide address", head + "32768,1\r\n", {}, Malformed(5, kGeneral)},
      {"wide value", head + "130,2147483648\r\n", {}, Malformed(5, kGeneral)},
      {"NUL", head + "130,1" + nul + "\r\n", {}, Malformed(5, kGeneral)},
      {"short source line", head + "[SOURCE]\r\n138, 16\r\n", {}, Malformed(6, kSource)},
      {"wide source code", head + "[SOURCE]\r\n138,40000,1\r\n", {}, Malformed(6, kSource)},
      {"second source header",
       head + "[SOURCE]\r\n138,16,1\r\n[SOURCE]\r\n",
       {"value 138 1"},
       Malformed(7, kSource)},
      {"junk in the source section", head + "[SOURCE]\r\n" + commas, {}, Malformed(6, kSource)},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    WriteText("panel.txt", test.text);
    Panel fresh;
    fresh.LoadProduct(35);
    fresh.settings.LoadSettingsFile();
    EXPECT_EQ(fresh.Applied(), test.applied);
    EXPECT_THAT(fresh.boxes.shown, ElementsAre(test.box));
    EXPECT_THAT(fresh.port.written, IsEmpty());
  }
}

TEST_F(SettingsFileTest, PutsPerSourceValuesIntoTheRowOfTheirSource) {
  panel.LoadProduct(35);
  WriteText("panel.txt",
            "[1.0]\r\n[GENERAL1A]\r\n182,5\r\n[SOURCE]\r\n182, 48 ,6\r\n182, 99 ,7\r\n");
  panel.settings.LoadSettingsFile();
  EXPECT_EQ(panel.values.SourceValue(1, 0), 7);  // first 5; 99 is no source and goes there too
  EXPECT_EQ(panel.values.SourceValue(1, 3), 6);
  EXPECT_EQ(panel.values.ParamValue(52), 0);
}

TEST_F(SettingsFileTest, ReportsAFileThatCannotBeOpened) {
  std::filesystem::create_directory("panel.txt");
  for (const char* name : {"panel.txt", "away/B\xC3\xBChne\xE2\x82\xAC.txt"}) {
    panel.dialogs.name = name;
    panel.settings.LoadSettingsFile();
  }
  EXPECT_THAT(
      panel.boxes.shown,
      ElementsAre(Box{"\"panel.txt\": the file cannot be opened", BoxIcon::kCritical, ""},
                  Box{"\"B\xFChne?.txt\": the file cannot be opened", BoxIcon::kCritical, ""}));
}

TEST_F(SettingsFileTest, WhatIsSavedComesBackIntoAFreshPanel) {
  panel.LoadProduct(35);
  panel.Fit({0, 1, 3});
  for (int i = 0; i < kCatalogueSize; ++i) {
    if (!panel.catalogue.IsPerSource(i)) panel.values.SetParamValue(i, 3 * i - 200);
  }
  panel.values.SetParamValue(278, 1);
  for (int slot = 0; slot <= 15; ++slot) {
    for (const int source : {0, 1, 3})
      panel.values.SetSourceValue(slot, source, 10 * slot + source);
  }
  panel.settings.SaveSettingsFile(35);
  std::string expected = ReadText("panel.txt");

  Panel fresh;
  fresh.LoadProduct(35);
  fresh.Fit({0, 1, 3});
  fresh.settings.LoadSettingsFile();
  fresh.settings.SaveSettingsFile(35);
  // The lines of "On source loss" all go to the source that element 278 numbers.
  const std::string before = "163, 16 ,150\r\n163, 17 ,151\r\n163, 48 ,153\r\n";
  const std::string after = "163, 16 ,0\r\n163, 17 ,153\r\n163, 48 ,0\r\n";
  ASSERT_NE(expected.find(before), std::string::npos);
  expected.replace(expected.find(before), before.size(), after);
  EXPECT_EQ(ReadText("panel.txt"), expected);
}

}  // namespace
}  // namespace kalde2
