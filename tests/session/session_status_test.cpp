#include "session/session_status.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>

namespace kalde2 {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kLooking = "Looking for the unit... Esc stops";
constexpr const char* kSilent = "The unit does not answer";
constexpr const char* kUnread = "Values have not been read: Clone > Read fetches them";
constexpr const char* kLoaded = "Loading sent nothing: Clone > Write does";
constexpr const char* kListed = "New resolutions are listed from the next start";

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

  Texts shown;
  SessionStatus status{*this};
};

TEST_F(SessionStatusTest, ChangesWithWhatBecomesOfTheSession) {
  const std::map<std::string, std::function<void()>> steps = {
      {"look", [this] { status.PortOpened(); }},
      {"found", [this] { status.UnitFound(); }},
      {"close", [this] { status.PortClosed(); }},
      {"read", [this] { status.ValuesRead(Report(Outcome::kAnswered)); }},
      {"read-lacking", [this] { status.ValuesRead(Report(Outcome::kRefused)); }},
      {"read-gaps", [this] { status.ValuesRead(Report(Outcome::kSilent)); }},
      {"read-cut", [this] { status.ValuesRead(Report(Outcome::kAnswered, false)); }},
      {"write", [this] { status.ValuesWritten(Report(Outcome::kAnswered)); }},
      {"write-gaps", [this] { status.ValuesWritten(Report(Outcome::kSilent)); }},
      {"load", [this] { status.FileLoaded(true); }},
      {"load-half", [this] { status.FileLoaded(false); }},
      {"silent", [this] { status.RequestEnded(false); }},
      {"answer", [this] { status.RequestEnded(true); }},
      {"slot", [this] { status.SlotBegins(1, 2); }},
      {"saved", [this] { status.ResolutionsSaved(); }},
      {"fetched", [this] { status.FetchEnded(); }},
  };
  // Each begins where a unit has been there and gone.
  const std::pair<const char*, Texts> courses[] = {
      {"silent slot", {}},
      {"look found read close", {kLooking, kUnread, ""}},
      {"look found read-lacking", {kLooking, kUnread, ""}},
      {"look found read-gaps read-cut write", {kLooking, kUnread}},
      {"look found load write-gaps write", {kLooking, kUnread, kLoaded, ""}},
      {"look found read load-half", {kLooking, kUnread, "", kLoaded}},
      {"look found load-half", {kLooking, kUnread}},
      // Nothing of the unit before, nor of a fetch.
      {"look found load silent close look found",
       {kLooking, kUnread, kLoaded, kSilent, "", kLooking, kUnread}},
      {"look found slot close look found slot saved close look",
       {kLooking, kUnread, "Slot 1 of 2", "", kLooking, kUnread, "Slot 1 of 2", kListed, "",
        kLooking}},
      {"look found slot fetched", {kLooking, kUnread, "Slot 1 of 2", kUnread}},
      // Loaded for the unit that is opened next; too late for the one before.
      {"load look silent close look found write", {kLooking, "", kLooking, kLoaded, ""}},
      {"look found close read write look found", {kLooking, kUnread, "", kLooking, kUnread}},
      {"look found read silent silent answer answer", {kLooking, kUnread, "", kSilent, ""}},
      {"look found slot saved answer", {kLooking, kUnread, "Slot 1 of 2", kListed, kUnread}},
      // The first that holds.
      {"look found load slot saved slot silent answer",
       {kLooking, kUnread, kLoaded, "Slot 1 of 2", kLoaded, "Slot 1 of 2", kSilent, "Slot 1 of 2"}},
  };
  for (const auto& [course, texts] : courses) {
    SCOPED_TRACE(course);
    for (const char* step : {"look", "answer", "found", "close"}) steps.at(step)();
    shown.clear();
    std::istringstream words(course);
    for (std::string word; words >> word;) steps.at(word)();
    EXPECT_EQ(shown, texts);
  }
}

}  // namespace
}  // namespace kalde2
