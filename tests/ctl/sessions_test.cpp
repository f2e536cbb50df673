// kalde2ctl beside a unit: the texts in sessions/. Each line is an act:
//
//     unit OPTION...   starts a unit anew
//     > LINE           is typed at its front panel
//     $ LINE           is typed in a shell, and ends
//     & LINE           is typed in a shell, and runs on
//     until TEXT       until what runs on has said so
//     at TEXT          until the unit has noted so
//     kill SIGNAL      sends it to what runs on, which ends
//     end              waits for its end
//
// Below it stands all that comes of it: results, what is said on standard error with "!", a status
// that is not 0, what was sent to the unit, files that have changed, and a port that stays locked.
// KALDE2_UPDATE=1 writes the texts anew.

#include <QDir>
#include <QRegularExpression>
#include <csignal>
#include <map>
#include <memory>
#include <sstream>

#include "adapters/serial_line.h"
#include "tests/support/ctl_process.h"
#include "tests/support/unit_process.h"
#include "tests/support/written_down.h"

namespace kalde2 {
namespace {

/// A line without what is another each time.
std::string Lasting(const std::string& line) {
  static const std::pair<QRegularExpression, const char*> kPassing[] = {
      {QRegularExpression("/dev/(pts/|ttys)\\d+"), "DEVICE"},
      {QRegularExpression(QRegularExpression::escape(qEnvironmentVariable("XDG_CONFIG_HOME"))),
       "CONFIG"},
      {QRegularExpression("\\d\\d:\\d\\d:\\d\\d\\.\\d{3}|^ *\\d+\\.\\d{6}"), "TIME"},
      {QRegularExpression("\"time\":(\\d+|\"[^\"]*\")"), "\"time\":TIME"},
      {QRegularExpression("^kalde2ctl \\d\\S+"), "kalde2ctl VERSION"},
      {QRegularExpression("\r"), "\\r"},
  };
  QString lasting = QString::fromStdString(line);
  for (const auto& [passing, word] : kPassing) lasting.replace(passing, word);
  return lasting.toStdString();
}

class Sessions : public testing::TestWithParam<std::filesystem::path> {
 protected:
  void Do(const std::string& line) {
    const std::size_t end = std::min(line.find(' '), line.size());
    acts_.at(line.substr(0, end))(QString::fromStdString(line.substr(end)).trimmed());
  }

  TempFolder folder;
  std::ostringstream log;

 private:
  using Files = std::map<QString, std::string>;

  void LogText(const char* mark, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      log << mark << (line.empty() ? "\"\"" : Lasting(line)) << '\n';
    }
    if (!text.empty() && text.back() != '\n') log << "  without an end of line\n";
  }

  void LogEnd(const CtlEnd& end) {
    LogText("  ", end.out);
    LogText("  ! ", end.err);
    if (end.status != 0) log << "  status " << end.status << '\n';
    LogChanges();
  }

  void LogChanges() {
    Files files;
    for (const QString& name : QDir(".").entryList(QDir::Files | QDir::System | QDir::Hidden)) {
      files[name] = ReadText(name.toStdString());
      const auto known = files_.find(name);
      const bool is_known = known != files_.end() && known->second == files[name];
      if (!is_known) log << "  writes " << name.toStdString() << '\n';
    }
    for (const auto& [name, text] : std::exchange(files_, files)) {
      if (!files.contains(name)) log << "  removes " << name.toStdString() << '\n';
    }
    if (unit_ == nullptr) return;
    for (const QString& request : unit_->Requests()) {
      if (request.contains(QRegularExpression("^F04|WRONG"))) {
        log << "  unit: " << request.section("  ", 1).toStdString() << '\n';
      }
    }
    const QString device = QString::fromStdString(unit_->Device());
    // A line that has hung up has no link any more, and its number may be another's.
    const bool is_there = QFile::symLinkTarget(UnitProcess::Link()) == device;
    if (is_there && IsLocked(device)) log << "  the port is locked\n";
  }

  // clang-format off
  const std::map<std::string, std::function<void(const QString&)>> acts_ = {
      {"unit", [this](const QString& options) { unit_.reset(); unit_ = std::make_unique<UnitProcess>(QProcess::splitCommand(options)); }},
      {">", [this](const QString& line) { unit_->Command(line.toUtf8()); (void)unit_->Requests(); }},
      {"$", [this](const QString& line) { LogEnd(RunCtl(line)); }},
      {"&", [this](const QString& line) { running_ = std::make_unique<CtlProcess>(line); }},
      {"until", [this](const QString& text) { EXPECT_TRUE(running_->Says(text.toUtf8())); }},
      {"at", [this](const QString& text) { EXPECT_TRUE(unit_->Says(text.toUtf8())); }},
      {"kill", [this](const QString& name) { kill(running_->Id(), kSignals.at(name)); LogEnd(running_->End()); }},
      {"end", [this](const QString&) { LogEnd(running_->End()); }},
  };
  // clang-format on
  static inline const std::map<QString, int> kSignals = {
      {"INT", SIGINT}, {"TERM", SIGTERM}, {"HUP", SIGHUP}};

  Files files_;
  std::unique_ptr<UnitProcess> unit_;
  std::unique_ptr<CtlProcess> running_;
};

TEST_P(Sessions, GoAsTheyAreWrittenDown) {
  std::istringstream lines(ReadText(GetParam()));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  ")) continue;
    log << line << '\n';
    if (!line.empty() && !line.starts_with('#')) Do(line);
  }
  ExpectAsWrittenDown(log.str(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, Sessions, testing::ValuesIn(WrittenDownIn("ctl/sessions")),
                         NameOfText);

}  // namespace
}  // namespace kalde2
