#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

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
  fs::permissions("panel.txt", fs::perms{0444});
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
