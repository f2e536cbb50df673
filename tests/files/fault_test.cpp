#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/mod_FileHandler.h"
#include "files/mod_resolutions.h"
#include "tests/support/fake_link.h"
#include "tests/support/file_faults.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using Box = FakeBoxes::Box;

const Box kSaved{"Settings saved to file", BoxIcon::kNone, ""};
const Box kLoaded{"Loaded values from file", BoxIcon::kNone, ""};
const Box kInvalid{"Invalid Resolution Data File.", BoxIcon::kNone, ""};

Box NotLoaded(std::string_view name, std::string_view why) {
  return {"\"" + std::string(name) + "\": " + std::string(why), BoxIcon::kCritical, ""};
}

struct FileFaultTest : ::testing::Test, LinkFixture {
  FileFaultTest() {
    LoadProduct(35);
    Fit({0, 3});
    dialogs.name = "panel.txt";
  }

  TempFolder folder;
  SettingsFile settings{catalogue, connectivity, values, link, boxes, dialogs};
  ResolutionTable table;
  ResolutionData data{table, link, clock, progress, boxes};
};

TEST_F(FileFaultTest, AFullDiskCutsTheSettingsFileAndTheSaveReportsSuccess) {
  values.SetParamValue(ValueStore::kCurrentSource, 48);  // as every save leaves it
  settings.SaveSettingsFile(35);
  const std::string whole = ReadText("panel.txt");
  for (const std::size_t room : {std::size_t{0}, whole.size() - 1, whole.size()}) {
    const FullDisk disk(room);
    settings.SaveSettingsFile(35);
    EXPECT_EQ(ReadText("panel.txt"), whole.substr(0, room));
  }
  EXPECT_THAT(boxes.shown, ElementsAre(kSaved, kSaved, kSaved, kSaved));
}

TEST_F(FileFaultTest, AFolderThatCannotBeWrittenToKeepsItsFiles) {
  WriteText("panel.txt", "[1.0]\r\n[GENERAL1A]\r\n159,5\r\n");
  WriteText("resdata.txt", "older");
  const UnwritableFolder unwritable(".");
  data.WriteResolutionFile("resdata.txt");
  settings.SaveSettingsFile(35);
  settings.LoadSettingsFile();
  EXPECT_EQ(values.ParamValue(29), 5);
  EXPECT_EQ(ReadText("resdata.txt"), "older");
  dialogs.name = "panel.txt/below.txt";
  settings.SaveSettingsFile(35);
  settings.LoadSettingsFile();
  // Without a file the built-in names are listed.
  EXPECT_EQ(data.FillResolutionList(*dialogs.name).size(), 106U);
  EXPECT_EQ(table.ResolutionName(81), "1920 x 1080i 25Hz1250");
  EXPECT_THAT(boxes.shown, ElementsAre(kSaved, kLoaded, kSaved,
                                       NotLoaded("below.txt", "the file cannot be opened")));
}

TEST_F(FileFaultTest, AFileThatCannotBeReadToItsEndIsNotLoaded) {
  // A plain file whose first page gives an input error.
  dialogs.name = "/proc/self/mem";
  settings.LoadSettingsFile();
  data.ReadResolutionFile("/proc/self/mem");
  EXPECT_THAT(boxes.shown,
              ElementsAre(NotLoaded("mem", "the file cannot be read to its end"), kInvalid));
}

}  // namespace
}  // namespace kalde2
