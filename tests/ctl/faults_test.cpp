// What goes wrong: at the unit, on the line, on the disk, and by the user's own hand.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QSerialPort>
#include <csignal>

#include "adapters/serial_line.h"
#include "tests/support/ctl_process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unit_process.h"

namespace kalde2 {
namespace {

constexpr auto kKept = "what was there\n";

/// A folder with a file that is to be replaced whole or not at all.
class CtlFaults : public testing::Test {
 protected:
  CtlFaults() { WriteText("kept.txt", kKept); }

  /// The file is as it was, nothing lies beside it, and the port is free.
  void ExpectNothingLeft(const UnitProcess& unit) {
    EXPECT_EQ(ReadText("kept.txt"), kKept);
    EXPECT_EQ(QDir(".").entryList(QDir::Files | QDir::Hidden), QStringList{"kept.txt"});
    EXPECT_FALSE(IsLocked(QString::fromStdString(unit.Device())));
  }

  TempFolder folder;
};

TEST_F(CtlFaults, EachHasItsStatusAndItsWord) {
  struct Case {
    QStringList unit;
    QStringList words;
    int status;
    const char* err;
  };
  const QString kept = "kept.txt";
  const Case cases[] = {
      {{"--fault", "silent"},
       {"get", "freeze"},
       4,
       "no unit answers at 57600 baud on port 1; see that it is on and set to this rate"},
      {{"--baud", "9600"}, {"get", "freeze"}, 4, "no unit answers at 57600 baud on port 1"},
      {{"--type", "62"}, {"info"}, 4, "the unit is of type 62, which is not supported"},
      {{"--type", "26"}, {"autoset"}, 4, "a K2-5100 has no autoset"},
      {{"--fault", "ignore=156"}, {"read", kept}, 4, "the unit does not answer any more"},
      {{"--fault", "refuse=156"}, {"get", "freeze"}, 5, "the unit refuses Freeze"},
      {{"--fault", "refuse=156"}, {"set", "freeze=on"}, 5, "the unit refuses Freeze"},
      {{"--fault", "refuse=200"}, {"store"}, 5, "the unit refuses it"},
      {{"--fault", "refuse=254"}, {"autoset"}, 5, "the unit refuses autoset"},
      {{"--fault", "refuse=216"}, {"resolutions", kept}, 5, "the unit does not tell how many"},
      {{"--fault", "short-packet"}, {"resolutions", "/nowhere/r"}, 2, "/nowhere/r: "},
      {{"--fault", "hang-up-during=150"}, {"read", kept}, 3, "/dev/pts/"},
      {{"--fault", "hang-up-before=3"}, {"list"}, 3, "/dev/pts/"},
      {{}, {"-p", "7", "info"}, 3, "There is no serial port 7 on this computer; \"kalde2ctl p"},
      {{}, {"-p", "/dev/no", "info"}, 3, "there is no device /dev/no; \"kalde2ctl ports\" lists"},
      {{}, {"-p", "/dev/null", "info"}, 3, "/dev/null: "},
      {{}, {"read", "/dev/full"}, 2, "/dev/full: No space left on device"},
  };
  for (const auto& [options, words, status, err] : cases) {
    const UnitProcess unit(options);
    const CtlEnd end = RunCtl(words);
    EXPECT_EQ(end.status, status) << words.join(' ').toStdString();
    EXPECT_TRUE(end.err.starts_with(std::string("kalde2ctl: ") + err)) << end.err;
    EXPECT_EQ(std::ranges::count(end.err, '\n'), 1) << end.err;
    ExpectNothingLeft(unit);
  }
}

TEST_F(CtlFaults, ARefusedValueIsNamedAndTheRestIsSaved) {
  const UnitProcess unit({"--fault", "refuse=156"});
  const CtlEnd read = RunCtl({"read", "kept.txt"});
  EXPECT_EQ(read.status, 5);
  EXPECT_EQ(read.err, "kalde2ctl: the unit refuses Freeze\n");
  EXPECT_TRUE(QString::fromStdString(ReadText("kept.txt")).contains("\r\n156, 0\r\n"));
  const CtlEnd compared = RunCtl({"compare", "kept.txt"});
  EXPECT_EQ(compared.status, 1);
  EXPECT_EQ(compared.out, "Freeze: Off in kept.txt, missing in the unit\n");
  const CtlEnd written = RunCtl({"write", "kept.txt"});
  EXPECT_EQ(written.status, 1);
  EXPECT_EQ(written.out, "Freeze: Off was sent, the unit refuses it\n");
}

TEST_F(CtlFaults, APortInUseIsLeftAlone) {
  const UnitProcess unit;
  QSerialPort other(QString::fromStdString(unit.Device()));
  ASSERT_TRUE(other.open(QIODevice::ReadWrite));
  const CtlEnd end = RunCtl({"info"});
  EXPECT_EQ(end.status, 3);
  EXPECT_EQ(end.err, "kalde2ctl: " + unit.Device() + " is in use by another program\n");
  EXPECT_TRUE(QString::fromStdString(RunCtl({"ports"}).out).contains("in use"));
}

TEST_F(CtlFaults, ASignalEndsAfterTheTransactionAndLeavesNothing) {
  const std::pair<QStringList, const char*> cases[] = {
      {{"read", "kept.txt"}, "reads Freeze"},
      {{"resolutions", "kept.txt"}, "resolution slot 20"},
      {{"autoset"}, "reads Autoset"},
      {{"list"}, "of source 20"},
  };
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    for (const auto& [words, moment] : cases) {
      UnitProcess unit({"--latency", "2"});
      CtlProcess ctl(words);
      ASSERT_TRUE(unit.Says(moment)) << moment;
      kill(ctl.Id(), signal);
      const CtlEnd end = ctl.End();
      EXPECT_EQ(end.status, 130) << moment;
      EXPECT_EQ(end.err, "kalde2ctl: ended by a signal\n");
      ExpectNothingLeft(unit);
    }
  }
}

TEST_F(CtlFaults, AWriteThatEndsSaysHowFarItCame) {
  UnitProcess unit({"--latency", "2"});
  ASSERT_EQ(RunCtl({"read", "all.txt"}).status, 0);
  CtlProcess ctl({"write", "all.txt"});
  ASSERT_TRUE(unit.Says("sets Freeze"));
  unit.Command("hang-up");
  const CtlEnd end = ctl.End();
  EXPECT_EQ(end.status, 3);
  EXPECT_TRUE(QString::fromStdString(end.err).contains(" values were sent before the end\n"));
}

TEST_F(CtlFaults, AFullDiskLeavesTheFileThatWasThere) {
  const UnitProcess unit;
  CtlProcess ctl({"read", "kept.txt"}, [] {
    const rlimit room{100, 100};
    setrlimit(RLIMIT_FSIZE, &room);
    std::signal(SIGXFSZ, SIG_IGN);
  });
  const CtlEnd end = ctl.End();
  EXPECT_EQ(end.status, 2);
  EXPECT_TRUE(end.err.starts_with("kalde2ctl: kept.txt: ")) << end.err;
  ExpectNothingLeft(unit);
}

TEST_F(CtlFaults, AClosedPipeEndsTheWatch) {
  const UnitProcess unit({"--fault", "unasked=50", "--quiet"});
  QProcess shell;
  shell.start("bash", {"-c", "\"$0\" watch | head -n 1; echo ${PIPESTATUS[0]}", KALDE2_CTL});
  ASSERT_TRUE(shell.waitForFinished(20'000));
  EXPECT_TRUE(shell.readAllStandardOutput().endsWith("\n2\n"));
  EXPECT_TRUE(shell.readAllStandardError().endsWith("kalde2ctl: standard output: Broken pipe\n"));
  ExpectNothingLeft(unit);
}

}  // namespace
}  // namespace kalde2
