#include "session/session_status.h"

#include <gmock/gmock.h>

#include <functional>

namespace kalde2 {
namespace {

using ::testing::ElementsAreArray;
using Texts = std::vector<std::string>;

constexpr const char* kLooking = "Looking for the unit... Esc stops";
constexpr const char* kSilent = "The unit does not answer";
constexpr const char* kUnread = "Values have not been read: Clone > Read fetches them";
constexpr const char* kLoaded = "Loading sent nothing: Clone > Write does";
constexpr const char* kListed = "New resolutions are listed from the next start";

TEST(StatusTextTest, TellsTheFirstThatHolds) {
  SessionFacts facts = {.is_open = true,
                        .is_looking = true,
                        .is_silent = true,
                        .has_new_resolutions = true,
                        .values = HeldValues::kLoaded,
                        .slot = 12,
                        .slot_count = 106};
  EXPECT_EQ(StatusText(facts), kLooking);
  facts.is_looking = false;
  EXPECT_EQ(StatusText(facts), kSilent);
  facts.is_silent = false;
  EXPECT_EQ(StatusText(facts), "Slot 12 of 106");
  facts.slot = 0;
  EXPECT_EQ(StatusText(facts), kLoaded);
  facts.values = HeldValues::kOthers;
  EXPECT_EQ(StatusText(facts), kListed);
  facts.has_new_resolutions = false;
  EXPECT_EQ(StatusText(facts), kUnread);
  facts.values = HeldValues::kUnits;
  EXPECT_EQ(StatusText(facts), "");
  facts = {.is_looking = true, .is_silent = true, .slot = 1};
  EXPECT_EQ(StatusText(facts), "") << "closed";
}

struct SessionStatusTest : ::testing::Test, StatusDisplay {
  void ShowStatus(const std::string& text) override { shown.push_back(text); }

  /// What a transfer of three requests reports.
  static TransferReport Report(Outcome second, bool is_complete = true) {
    TransferReport report;
    for (const Outcome outcome : {Outcome::kAnswered, second, Outcome::kAnswered}) {
      report.Count({}, outcome);
    }
    report.is_complete = is_complete;
    return report;
  }

  void Open() {
    status.PortOpened();
    status.RequestEnded(true);
    status.UnitFound();
  }

  Texts shown;
  SessionStatus status{*this};
};

TEST_F(SessionStatusTest, ChangesWithWhatBecomesOfTheSession) {
  const auto open = [this] { Open(); };
  const auto close = [this] { status.PortClosed(); };
  const auto read = [this](Outcome second, bool is_complete) {
    return [=, this] { status.ValuesRead(Report(second, is_complete)); };
  };
  const auto write = [this](Outcome second) {
    return [=, this] { status.ValuesWritten(Report(second)); };
  };
  const auto load = [this](bool is_whole) { return [=, this] { status.FileLoaded(is_whole); }; };
  const auto ends = [this](bool answered) { return [=, this] { status.RequestEnded(answered); }; };
  const auto whole = read(Outcome::kAnswered, true);
  const auto written = write(Outcome::kAnswered);
  const auto slot = [this] { status.SlotBegins(1, 2); };
  const auto fetched = [this] { status.ResolutionsSaved(), status.FetchEnded(); };
  const auto look = [this] { status.PortOpened(); };

  struct Course {
    const char* name;
    std::vector<std::function<void()>> steps;
    Texts shown;
  } const courses[] = {
      {"read", {open, whole, close}, {kLooking, kUnread, ""}},
      {"a refused parameter is one that the unit lacks",
       {open, read(Outcome::kRefused, true)},
       {kLooking, kUnread, ""}},
      {"read with gaps, and cut off",
       {open, read(Outcome::kSilent, true), read(Outcome::kAnswered, false)},
       {kLooking, kUnread}},
      {"written without being read", {open, written}, {kLooking, kUnread}},
      {"loaded and written",
       {open, load(true), write(Outcome::kSilent), written},
       {kLooking, kUnread, kLoaded, ""}},
      {"loaded over what was read", {open, whole, load(false)}, {kLooking, kUnread, "", kLoaded}},
      {"half loaded over what was not", {open, load(false)}, {kLooking, kUnread}},
      {"nothing of the unit before",
       {open, load(true), ends(false), close, open},
       {kLooking, kUnread, kLoaded, kSilent, "", kLooking, kUnread}},
      {"nor of a fetch",
       {open, whole, slot, close, open, slot, fetched, close, open},
       {kLooking, kUnread, "", "Slot 1 of 2", "", kLooking, kUnread, "Slot 1 of 2", kListed, "",
        kLooking, kUnread}},
      {"loaded for the unit that is opened next",
       {load(true), look, ends(false), close, open, written},
       {kLooking, "", kLooking, kLoaded, ""}},
      {"too late", {open, close, whole, written, open}, {kLooking, kUnread, "", kLooking, kUnread}},
      {"silent, and back",
       {open, whole, ends(false), ends(false), ends(true), ends(true)},
       {kLooking, kUnread, "", kSilent, ""}},
      {"the news of a fetch ends with the next request",
       {open, slot, fetched, ends(true)},
       {kLooking, kUnread, "Slot 1 of 2", kListed, kUnread}},
  };
  for (const Course& course : courses) {
    SCOPED_TRACE(course.name);
    Open();
    status.PortClosed();
    shown.clear();
    for (const auto& step : course.steps) step();
    EXPECT_THAT(shown, ElementsAreArray(course.shown));
  }
}

}  // namespace
}  // namespace kalde2
