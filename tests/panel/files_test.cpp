#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <random>

#include "panel/resolution_menu.h"
#include "panel/settings_file.h"
#include "tests/support/fake_dialogs.h"
#include "tests/support/fake_link.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Box = FakeBoxes::Box;

const Box kSaved{"Settings saved to file", BoxIcon::kNone, ""};
const Box kLoaded{"Loaded values from file", BoxIcon::kNone, ""};
constexpr std::string_view kInvalid = "Invalid Resolution Data File.";
const Box kCorrupted{"Resolution Data File Corrupted.", BoxIcon::kNone, ""};

Box NotLoaded(std::string_view name, std::string_view why) {
  return {"\"" + std::string(name) + "\": " + std::string(why), BoxIcon::kCritical, ""};
}

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
  EXPECT_THAT(panel.boxes.shown, ElementsAre(kSaved));
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
    Box box = kLoaded;
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

constexpr std::string_view kHead = "[1.0]\r\n[DEVICE]\r\n35\r\n[GENERAL1A]\r\n";

/// A disk that is full for files of this process beyond a size, while the scope lasts.
class FullDisk {
 public:
  explicit FullDisk(rlim_t room) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{room, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

struct FileFaultTest : ::testing::Test, LinkFixture, StatusDisplay {
  FileFaultTest() {
    LoadProduct(35);
    Fit({0, 3});
    dialogs.name = "panel.txt";
  }

  void ShowStatus(const std::string& /*text*/) override {}

  /// The lines of a resolution data file with this many entries.
  std::string ResolutionText(std::size_t upper) {
    ResolutionTable entries;
    entries.Reset(upper);
    std::ostringstream text;
    WriteResolutions(text, entries);
    return text.str();
  }

  TempFolder folder;
  FakeBoxes boxes;
  FakeFileDialogs dialogs;
  SettingsFile settings{model, boxes, dialogs};
  ResolutionTable table;
  ResolutionData data{table, link, progress};
  frm_Progress window{nullptr, clock};
  SessionStatus status{*this};
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

TEST_F(FileFaultTest, AFullDiskCutsTheResolutionFileAndTheFetchEndsAsEver) {
  port.on_write = [](std::string_view frame) {
    return frame == "F84104100D8??\r" ? "FC4104100D80000027E\r" : "S\x01x";
  };
  {
    const FullDisk disk(70);
    ResolutionMenu(table, link, clock, window, boxes, status).FetchResolutionData();
  }
  EXPECT_EQ(ReadText("resdata.txt"), ResolutionText(2).substr(0, 70));
  EXPECT_FALSE(window.isVisible() || link.CommsBusy());
  EXPECT_THAT(clock.sleeps, ElementsAre(std::chrono::milliseconds(2000)));
  EXPECT_THAT(boxes.shown, IsEmpty());
  EXPECT_EQ(table.Size(), 3U);
  // The next start meets what is left of it.
  EXPECT_TRUE(
      ResolutionMenu(table, link, clock, window, boxes, status).FillResolutionList().empty());
  EXPECT_THAT(boxes.shown, ElementsAre(kCorrupted));
}

TEST_F(FileFaultTest, AFolderThatCannotBeWrittenToKeepsItsFiles) {
  WriteText("panel.txt", std::string(kHead) + "159,5\r\n");
  WriteText("resdata.txt", ResolutionText(1));
  WriteText("secret.txt", "[1.0]\r\n");
  fs::permissions("secret.txt", fs::perms::none);
  // In such a folder a user may still overwrite files of his own.
  for (const char* name : {"panel.txt", "resdata.txt"}) fs::permissions(name, fs::perms{0444});
  fs::permissions(".", fs::perms{0555});
  const OrdinaryUser user;
  table.Reset(7);
  EXPECT_FALSE(data.WriteResolutionFile("resdata.txt"));
  for (const char* name : {"panel.txt", "new.txt", "panel.txt/below.txt"}) {
    dialogs.name = name;
    settings.SaveSettingsFile(35);
  }
  for (const char* name : {"panel.txt", "panel.txt/below.txt", "secret.txt"}) {
    dialogs.name = name;
    settings.LoadSettingsFile();
  }
  EXPECT_EQ(values.ParamValue(29), 5);
  EXPECT_EQ(data.FillResolutionList("resdata.txt").items.size(), 2U);
  EXPECT_EQ(data.FillResolutionList("secret.txt").problem, kInvalid);
  // Without a file the built-in names are listed.
  EXPECT_EQ(data.FillResolutionList("panel.txt/below.txt").items.size(), 106U);
  EXPECT_EQ(table.ResolutionName(81), "1920 x 1080i 25Hz1250");
  constexpr const char* kUnopened = "the file cannot be opened";
  EXPECT_THAT(boxes.shown,
              ElementsAre(kSaved, kSaved, kSaved, kLoaded, NotLoaded("below.txt", kUnopened),
                          NotLoaded("secret.txt", kUnopened)));
}

TEST_F(FileFaultTest, AFileThatCannotBeReadToItsEndIsNotLoaded) {
  // A plain file whose first page gives an input error.
  dialogs.name = "/proc/self/mem";
  settings.LoadSettingsFile();
  EXPECT_EQ(data.ReadResolutionFile("/proc/self/mem"), kInvalid);
  EXPECT_THAT(boxes.shown, ElementsAre(NotLoaded("mem", "the file cannot be read to its end")));
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST_F(FileFaultTest, JunkTakesNeitherMuchMemoryNorLong) {
  constexpr std::uintmax_t kSize = 100'000'000;
  constexpr long kFarLessThanTheFile = 64'000;
  constexpr double kSeconds = 60;
  const long memory_before = PeakKilobytes();
  const std::clock_t time_before = std::clock();
  std::mt19937 random;
  std::string noise(kSize / 10, '\0');
  std::ranges::generate(noise, [&] { return static_cast<char>(random()); });
  for (const std::string& beginning :
       {std::string(), std::string("[1.0]\r\n[GENERAL1A]\r\n159,5\r\n"), ResolutionText(0)}) {
    WriteText("panel.txt", beginning + noise);
    fs::resize_file("panel.txt", kSize);  // with NULs
    settings.LoadSettingsFile();
    EXPECT_NE(data.FillResolutionList("panel.txt").problem == kInvalid, beginning[0] == 'R');
    EXPECT_LE(table.Size(), 32768U);
  }
  EXPECT_EQ(boxes.shown.at(0), kLoaded);
  EXPECT_THAT(boxes.shown.at(1).prompt, ::testing::StartsWith("\"panel.txt\": line 4: expected"));
  EXPECT_EQ(boxes.shown.at(2), kLoaded);
  EXPECT_LT(PeakKilobytes() - memory_before, kFarLessThanTheFile);
  EXPECT_LT(static_cast<double>(std::clock() - time_before) / CLOCKS_PER_SEC, kSeconds);
}

}  // namespace
}  // namespace kalde2
