#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <ctime>
#include <filesystem>
#include <functional>
#include <random>

#include "files/mod_FileHandler.h"
#include "files/mod_resolutions.h"
#include "tests/support/fake_link.h"
#include "tests/support/file_faults.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Box = FakeBoxes::Box;

const Box kSaved{"Settings saved to file", BoxIcon::kNone, ""};
const Box kLoaded{"Loaded values from file", BoxIcon::kNone, ""};
const Box kInvalid{"Invalid Resolution Data File.", BoxIcon::kNone, ""};
const Box kCorrupted{"Resolution Data File Corrupted.", BoxIcon::kNone, ""};

Box NotLoaded(std::string_view name, std::string_view why) {
  return {"\"" + std::string(name) + "\": " + std::string(why), BoxIcon::kCritical, ""};
}

constexpr std::string_view kHead = "[1.0]\r\n[DEVICE]\r\n35\r\n[GENERAL1A]\r\n";

struct FileFaultTest : ::testing::Test, LinkFixture {
  FileFaultTest() {
    LoadProduct(35);
    Fit({0, 3});
    dialogs.name = "panel.txt";
  }

  /// The lines of a resolution data file with this many entries.
  std::string ResolutionText(std::size_t upper) {
    ResolutionTable entries;
    entries.Reset(upper);
    std::ostringstream text;
    WriteResolutions(text, entries);
    return text.str();
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
  for (const std::size_t room : {std::size_t{0}, std::size_t{40}, whole.size() - 1}) {
    const FullDisk disk(room);
    settings.SaveSettingsFile(35);
    EXPECT_EQ(ReadText("panel.txt"), whole.substr(0, room));
  }
  settings.SaveSettingsFile(35);
  EXPECT_EQ(ReadText("panel.txt"), whole);
  EXPECT_THAT(boxes.shown, ElementsAre(kSaved, kSaved, kSaved, kSaved, kSaved));
}

TEST_F(FileFaultTest, AFullDiskCutsTheResolutionFileAndTheFetchEndsAsEver) {
  port.on_write = [](std::string_view frame) {
    return frame == "F84104100D8??\r" ? "FC4104100D80000027E\r" : "S\x01x";
  };
  {
    const FullDisk disk(100);
    data.FetchResolutionData();
  }
  EXPECT_EQ(ReadText("resdata.txt"), ResolutionText(2).substr(0, 100));
  EXPECT_FALSE(progress.shown);
  EXPECT_FALSE(link.CommsBusy());
  EXPECT_THAT(boxes.shown, IsEmpty());
  EXPECT_EQ(table.Size(), 3U);

  // The next start meets what is left of it.
  EXPECT_EQ(data.FillResolutionList("resdata.txt").size(), 0U);
  WriteText("resdata.txt", ResolutionText(2).substr(0, 70));
  EXPECT_EQ(data.FillResolutionList("resdata.txt").size(), 0U);
  EXPECT_THAT(boxes.shown, ElementsAre(kCorrupted));
}

TEST_F(FileFaultTest, AFolderThatCannotBeWrittenToKeepsItsFiles) {
  WriteText("panel.txt", std::string(kHead) + "159,5\r\n");
  WriteText("resdata.txt", ResolutionText(1));
  WriteText("secret.txt", "[1.0]\r\n");
  chmod("secret.txt", 0);
  const UnwritableFolder unwritable(".");
  table.Reset(7);
  data.WriteResolutionFile("resdata.txt");
  data.WriteResolutionFile("new.txt");
  for (const char* name : {"panel.txt", "new.txt", "panel.txt/below.txt"}) {
    dialogs.name = name;
    settings.SaveSettingsFile(35);
  }
  EXPECT_FALSE(fs::exists("new.txt"));
  EXPECT_THAT(boxes.shown, ElementsAre(kSaved, kSaved, kSaved));

  boxes.shown.clear();
  for (const char* name : {"panel.txt", "panel.txt/below.txt", "secret.txt"}) {
    dialogs.name = name;
    settings.LoadSettingsFile();
  }
  EXPECT_EQ(values.ParamValue(29), 5);
  EXPECT_EQ(data.FillResolutionList("resdata.txt").size(), 2U);
  EXPECT_EQ(data.FillResolutionList("secret.txt").size(), 0U);
  constexpr const char* kUnopened = "the file cannot be opened";
  EXPECT_THAT(boxes.shown, ElementsAre(kLoaded, NotLoaded("below.txt", kUnopened),
                                       NotLoaded("secret.txt", kUnopened), kInvalid));
  EXPECT_EQ(data.FillResolutionList("panel.txt/below.txt").size(), 106U);
}

TEST_F(FileFaultTest, AFileThatCannotBeReadToItsEndIsNotLoaded) {
  // A plain file whose first page gives an input error.
  dialogs.name = "/proc/self/mem";
  settings.LoadSettingsFile();
  data.ReadResolutionFile("/proc/self/mem");
  EXPECT_THAT(boxes.shown,
              ElementsAre(NotLoaded("mem", "the file cannot be read to its end"), kInvalid));
}

TEST_F(FileFaultTest, AFileThatVanishesWhileItIsLoaded) {
  struct : FakeDisplay {
    std::function<void()> on_value;
    void ShowValue(std::int16_t, std::int32_t) override { on_value(); }
  } watched;
  CommandLink watched_link(port, clock, values, watched, watched);
  SettingsFile file(catalogue, connectivity, values, watched_link, boxes, dialogs);
  const std::string line = "159,1\r\n";
  constexpr int kLines = 100'000;  // far more than is read ahead
  std::string text(kHead);
  for (int i = 0; i < kLines; ++i) text += line;

  const auto lines_loaded = [&](const std::function<void()>& at_first_line) {
    WriteText("panel.txt", text);
    int lines = 0;
    watched.on_value = [&] {
      if (lines++ == 0) at_first_line();
    };
    file.LoadSettingsFile();
    return lines;
  };
  EXPECT_EQ(lines_loaded([] { fs::remove("panel.txt"); }), kLines);
  EXPECT_THAT(boxes.shown, ElementsAre(kLoaded));
  const int before_the_cut = lines_loaded([] { fs::resize_file("panel.txt", 0); });
  EXPECT_GT(before_the_cut, 0);
  EXPECT_LT(before_the_cut, kLines);
}

// Junk of 100 MB behind what a file holds.

void AppendNoise(const std::string& path) {
  std::mt19937 random;
  std::string block(1 << 20, '\0');
  for (char& byte : block) byte = static_cast<char>(random());
  std::ofstream file(path, std::ios::binary | std::ios::app);
  for (int i = 0; i < 100; ++i) file << block;
}

void AppendNuls(const std::string& path) {
  // Takes no room on the disk.
  fs::resize_file(path, fs::file_size(path) + 100'000'000);
}

struct JunkFileTest : FileFaultTest {
  using Append = void (*)(const std::string& path);

  /// Gives junk to each reader, at each place of a file that begins as a right one does.
  void ReadJunk(Append append) {
    const auto write = [append](std::string_view beginning) {
      WriteText("panel.txt", beginning);
      append("panel.txt");
    };
    write("");
    settings.LoadSettingsFile();
    EXPECT_EQ(data.FillResolutionList("panel.txt").size(), 0U);
    write("[1.0]\r\n");
    settings.LoadSettingsFile();
    EXPECT_THAT(boxes.shown, ElementsAre(kLoaded, kInvalid, kLoaded));

    write("[1.0]\r\n[GENERAL1A]\r\n159,5\r\n");
    settings.LoadSettingsFile();
    EXPECT_THAT(boxes.shown.back().prompt,
                ::testing::StartsWith("\"panel.txt\": line 4: expected"));
    EXPECT_EQ(values.ParamValue(29), 5);

    write(ResolutionText(0));
    EXPECT_GE(data.FillResolutionList("panel.txt").size(), 2U);
    EXPECT_LE(table.Size(), 32768U);
  }

  /// The same within bounds of memory and of processor time.
  void ReadJunkWithinBounds(Append append) {
    constexpr long kFarLessThanTheFile = 64'000;
    constexpr double kSeconds = 60;
    const long memory_before = PeakKilobytes();
    const std::clock_t time_before = std::clock();
    ReadJunk(append);
    EXPECT_LT(PeakKilobytes() - memory_before, kFarLessThanTheFile);
    EXPECT_LT(static_cast<double>(std::clock() - time_before) / CLOCKS_PER_SEC, kSeconds);
  }

  static long PeakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  }
};

TEST_F(JunkFileTest, Noise) {
  ReadJunkWithinBounds(AppendNoise);
}

TEST_F(JunkFileTest, Nuls) {
  ReadJunkWithinBounds(AppendNuls);
}

}  // namespace
}  // namespace kalde2
