// Each command against a unit that is well.

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <csignal>

#include "tests/support/ctl_process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unit_process.h"

namespace kalde2 {
namespace {

class Commands : public testing::Test {
 protected:
  /// The document that a command prints; it ends well.
  [[nodiscard]] static QJsonObject Json(QStringList words) {
    const CtlEnd end = RunCtl(words << "--json");
    EXPECT_EQ(end.status, 0) << end.err;
    return QJsonDocument::fromJson(QByteArray::fromStdString(end.out)).object();
  }

  /// The values that have been written to the unit since the last call.
  [[nodiscard]] QStringList Writes() { return unit.Requests().filter("F04"); }

  TempFolder folder;
  UnitProcess unit;
};

TEST_F(Commands, SayAndChangeWhatTheUnitHolds) {
  struct Case {
    QStringList words;
    int status;
    const char* out;
  };
  const Case cases[] = {
      {{"get", "freeze"}, 0, "Off\n"},
      {{"get", "main in", "131", "h zoom"}, 0, "RGB 1\n1024 x 768 60Hz\n100\n"},
      {{"set", "freeze=on", "h zoom=+20", "hue=-7", "--source", "CV 1"}, 0, "On\n120\n-7\n"},
      {{"get", "hue"}, 0, "0\n"},  // of the source that is set up
      {{"get", "hue", "--source", "0x30"}, 0, "-7\n"},
      {{"set", "main input=yc"}, 0, "YC 1\n"},
      {{"list", "hue"}, 0, ""},
      {{"list", "hue", "--all"}, 0, "186  Hue of RGB 1             0                  -90 to 90\n"},
      {{"list", "hue", "--source", "cv 1"},
       0,
       "186  Hue of CV 1              -7                 -90 to 90\n"},
      {{"fade", "out"}, 0, ""},
      {{"store"}, 0, ""},
      {{"autoset"},
       0,
       "Left shift of source 16: 2\nTop shift of source 16: -1\nRight shift of source 16: -2\n"
       "Bottom shift of source 16: 1\nInput Pixel Phase: 19\n"},
      {{"reset", "--yes"}, 0, ""},
      {{"get", "freeze"}, 0, "Off\n"},
  };
  for (const auto& [words, status, out] : cases) {
    const CtlEnd end = RunCtl(words);
    EXPECT_EQ(end.status, status) << words.join(' ').toStdString();
    EXPECT_EQ(end.out, out) << words.join(' ').toStdString();
    EXPECT_EQ(end.err, "");
  }
  const QStringList written = Writes();
  EXPECT_EQ(written.size(), 8) << written.join('\n').toStdString();
  EXPECT_TRUE(written.filter("WRONG").isEmpty());
  EXPECT_EQ(written.filter("sets Fade").size(), 1);
  EXPECT_EQ(unit.Value(403), 1) << "reset behind the fade";
}

TEST_F(Commands, DocumentsKeepTheirShape) {
  const QJsonObject info = Json({"info"});
  EXPECT_EQ(info["model"], "K2-6350");
  EXPECT_EQ(info["inputs"].toArray().size(), 5);
  EXPECT_EQ(info["inputs"][2].toObject(),
            (QJsonObject{{"source", 48}, {"name", "CV 1"}, {"state", "fitted"}}));
  EXPECT_EQ(info["device"].toString().toStdString(), unit.Device());

  const QJsonObject ports = Json({"ports"});
  EXPECT_EQ(ports["ports"][0].toObject(),
            (QJsonObject{{"number", 1},
                         {"device", QString::fromStdString(unit.Device())},
                         {"in_use", false},
                         {"description", QJsonValue()}}));

  EXPECT_EQ(Json({"get", "lock mode"})["parameters"][0].toObject(),
            (QJsonObject{{"address", 266},
                         {"name", "Lock mode"},
                         {"source", QJsonValue()},
                         {"input", QJsonValue()},
                         {"value", 0},
                         {"label", "Off"}}));
  EXPECT_EQ(Json({"set", "hue=5", "--source", "48"})["parameters"][0].toObject(),
            (QJsonObject{{"address", 186},
                         {"name", "Hue"},
                         {"source", 48},
                         {"input", QJsonValue()},
                         {"sent", 5},
                         {"value", 5},
                         {"label", QJsonValue()}}));
  const QJsonArray listed = Json({"list"})["parameters"].toArray();
  const QJsonArray all = Json({"list", "--all"})["parameters"].toArray();
  EXPECT_GT(all.size(), listed.size());
  for (const auto& row : all) EXPECT_EQ(row.toObject().size(), 10);
  EXPECT_EQ(Json({"autoset"})["finished"], true);

  const QJsonArray resolutions = Json({"resolutions"})["resolutions"].toArray();
  EXPECT_EQ(resolutions.size(), 106);
  EXPECT_EQ(resolutions[27].toObject()["name"], "1024 x 768 60Hz");
  EXPECT_TRUE(Writes().filter("WRONG").isEmpty());
}

TEST_F(Commands, AFileIsReadComparedAndWrittenBack) {
  EXPECT_EQ(RunCtl({"read", "a.txt"}).status, 0);
  EXPECT_EQ(RunCtl({"compare", "a.txt"}).status, 0);
  EXPECT_TRUE(Writes().isEmpty()) << "reading changes nothing";

  EXPECT_EQ(RunCtl({"set", "freeze=on", "back y=77"}).status, 0);
  EXPECT_EQ(RunCtl({"read", "b.txt"}).status, 0);
  constexpr auto kUnit =
      "Freeze: Off in a.txt, On in the unit\n"
      "Back Y: 16 in a.txt, 77 in the unit\n";
  const CtlEnd with_unit = RunCtl({"compare", "a.txt"});
  EXPECT_EQ(with_unit.status, 1);
  EXPECT_EQ(with_unit.out, kUnit);
  const CtlEnd of_files = RunCtl({"compare", "a.txt", "b.txt"});
  EXPECT_EQ(of_files.status, 1);
  EXPECT_EQ(of_files.out, QString(kUnit).replace("the unit", "b.txt").toStdString());
  const QJsonObject document =
      QJsonDocument::fromJson(
          QByteArray::fromStdString(RunCtl({"--json", "compare", "a.txt", "b.txt"}).out))
          .object();
  EXPECT_EQ(document["differences"][0]["right"].toObject(),
            (QJsonObject{{"value", 1}, {"label", "On"}}));

  (void)Writes();
  EXPECT_EQ(RunCtl({"write", "a.txt", "--dry-run", "--changed"}).out, "Freeze: Off\nBack Y: 16\n");
  EXPECT_TRUE(Writes().isEmpty());
  EXPECT_EQ(RunCtl({"write", "a.txt", "--changed"}).status, 0);
  EXPECT_EQ(Writes().size(), 2);
  EXPECT_EQ(unit.Value(315), 16);

  // One line for each value that the panel's Clone > Write sends.
  const QString trial = QString::fromStdString(RunCtl({"write", "b.txt", "--dry-run"}).out);
  EXPECT_EQ(RunCtl({"write", "b.txt"}).status, 0);
  EXPECT_EQ(Writes().size(), trial.count('\n'));
  EXPECT_EQ(unit.Value(315), 77);
  EXPECT_EQ(RunCtl({"resolutions", "r.txt"}).status, 0);
  EXPECT_EQ(ReadText("r.txt").substr(0, 10), "Resolution");
}

TEST_F(Commands, NothingIsSentThatIsWrong) {
  WriteText("other.txt", "[1.0]\r\n[DEVICE]\r\n22\r\n[GENERAL1A]\r\n156, 1\r\n");
  WriteText("broken.txt", "[1.0]\r\n[DEVICE]\r\n35\r\n[GENERAL1A]\r\n156, x\r\n");
  WriteText("none.txt", "Dear Sir,\r\n");
  const std::pair<QStringList, const char*> cases[] = {
      {{"set", "freeze=on", "h zoom=99"}, "H Zoom takes 100 to 1000, not \"99\""},
      {{"set", "freeze=on", "zoom tan=9"}, "there is no parameter \"zoom tan\""},
      {{"set", "hue=1", "--source", "TC 9"}, "there is no input \"TC 9\""},
      {{"get", "zoom"}, "parameter \"zoom\" may be Zoom Pan H or Zoom Pan V"},
      {{"list", "xyz"}, "no parameter has \"xyz\" in its name"},
      {{"fade", "away"}, "fade takes in or out, not \"away\""},
      {{"reset"}, "reset clears the unit's non-volatile memory; with --yes it does"},
      {{"write", "other.txt"},
       "other.txt is of 9R-K2-310 (type 22), the unit is a K2-6350 (type 35); --any-type writes"},
      {{"write", "broken.txt"}, "broken.txt: line 5: expected an address"},
      {{"write", "none.txt"}, "none.txt is no settings file"},
      {{"compare", "missing.txt"}, "missing.txt: the file cannot be opened"},
      {{"-b", "fast", "info"}, "\"fast\" is no baud rate; give one, as in -b 57600"},
  };
  for (const auto& [words, right] : cases) {
    const CtlEnd end = RunCtl(words);
    EXPECT_EQ(end.status, 2) << words.join(' ').toStdString();
    EXPECT_TRUE(end.err.starts_with(std::string("kalde2ctl: ") + right)) << end.err;
    EXPECT_EQ(end.out, "");
  }
  EXPECT_TRUE(Writes().isEmpty());
  EXPECT_EQ(RunCtl({"write", "other.txt", "--any-type", "--changed"}).status, 0);
  EXPECT_EQ(Writes().size(), 1);
}

TEST_F(Commands, HelpNeedsNoUnitAndAPathIsAPort) {
  const QString device = QString::fromStdString(unit.Device());
  EXPECT_EQ(RunCtl({"-p", device, "-b", "9600", "get", "freeze"}).out, "Off\n");
  EXPECT_TRUE(QString::fromStdString(RunCtl({"set", "--help"}).out).contains("PARAMETER=VALUE..."));
  EXPECT_TRUE(RunCtl({"--version"}).out.starts_with("kalde2ctl "));
}

TEST_F(Commands, WatchTellsWhatTheUnitSaysUnasked) {
  CtlProcess watch({"watch"});
  ASSERT_TRUE(watch.Notes("watching"));
  unit.Command("set 266 2");
  ASSERT_TRUE(watch.Says("  Lock mode: Lock+Mix\n"));
  unit.Command("set 186 -7 48");
  ASSERT_TRUE(watch.Says("  Hue of CV 1: -7\n"));
  kill(watch.Id(), SIGINT);
  const CtlEnd end = watch.End();
  EXPECT_EQ(end.status, 130);
  EXPECT_EQ(end.err, "kalde2ctl: watching; Ctrl+C ends it\nkalde2ctl: ended by a signal\n");
}

}  // namespace
}  // namespace kalde2
