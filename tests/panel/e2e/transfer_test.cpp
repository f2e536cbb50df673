// Clone, settings file and resolution data between the window, the unit and the disk.

#include <termios.h>

#include <QSerialPort>
#include <map>
#include <set>

#include "model/mod_Producttypes.h"
#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

QByteArray FileText(const QString& name) {
  QFile file(name);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
  return file.readAll();
}

class EndToEndTransfer : public EndToEnd {
 protected:
  /// A setting of the unit: an address and the source that it is kept for.
  using Place = std::pair<int, int>;
  using Settings = std::map<Place, int>;

  EndToEndTransfer() { AddProductEntries(catalogue_, 35); }
  ~EndToEndTransfer() override { QFile::remove("resdata.txt"); }

  /// A value for every parameter of the product, those that are kept per source for the sources
  /// that the panel names 0 and 16. Values lie in range and differ by `variant`, 1 or 2.
  Settings AllSettings(int variant) const {
    Settings settings;
    for (const int index : catalogue_.ActiveParams()) {
      const ParamRecord& record = catalogue_.Record(index);
      const int value = record.UseItemData ? (variant == 1 ? 48 : 17)
                        : record.HasList   ? variant - 1
                                           : record.MinValue + 3 * variant + index % 5;
      const int address = index + kFirstAddress;
      settings[{address, 16}] = value;
      if (record.PerSource) settings[{address, 0}] = value + 3;
    }
    return settings;
  }

  void SetUp(const Settings& settings) {
    QByteArray commands;
    for (const auto& [place, value] : settings) {
      commands += "set " + QByteArray::number(place.first) + ' ' + QByteArray::number(value) + ' ' +
                  QByteArray::number(place.second) + '\n';
    }
    unit->Command(commands);
  }

  Settings Held(const Settings& places) {
    Settings held;
    for (const auto& [place, value] : places) held[place] = unit->Value(place.first, place.second);
    return held;
  }

  ParamCatalogue catalogue_;
};

TEST_F(EndToEndTransfer, AFileTakesTheSettingsBackToTheUnit) {
  constexpr Place kTooWide{222, 0};
  Settings first = AllSettings(1);
  first[kTooWide] = 20000;
  StartUnit();
  SetUp(first);
  StartPanel();
  Press("Cmd_openclose");
  for (QComboBox* const combo : {Form().cbo_program, Form().cbo_lock}) {
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Down);
  }
  Choose("mnu_clone_read");
  file_name = QDir::current().filePath("first");
  Choose("mnu_file_save");
  EXPECT_EQ(Boxes(), QStringList("plain, KALDE2 Control Panel: Settings saved to file"));
  Press("Cmd_openclose");

  const Settings second = AllSettings(2);
  SetUp(second);
  StartPanel();
  Press("Cmd_openclose");
  EXPECT_EQ(State(), "OPEN : K2-6350");
  (void)unit->Requests();
  file_name += ".txt";
  Choose("mnu_file_load");
  EXPECT_EQ(Boxes(), QStringList("plain, KALDE2 Control Panel: Loaded values from file"));
  EXPECT_EQ(unit->Requests(), QStringList());
  Choose("menu_clone_write");

  Settings expected = first;
  for (const int index : catalogue_.ActiveParams()) {
    const ParamRecord& record = catalogue_.Record(index);
    if (!record.PerSource) continue;
    const int address = index + kFirstAddress;
    // Source numbers beyond 8 have no code: all goes to source 0. RGB parameters are left out.
    expected[{address, 16}] = second.at({address, 16});
    if (record.RgbOnly) expected[{address, 0}] = second.at({address, 0});
  }
  expected[{278, 16}] = 16;                 // the source that was written last
  expected[{163, 0}] = 0;                   // loaded into another column
  expected[kTooWide] = first.at({188, 0});  // saved as the line before
  EXPECT_EQ(Held(expected), expected);

  unit->Command("fault refuse=175\nfault ignore=176");
  EXPECT_TRUE(unit->Says("refuse=175\nignore=176"));
  (void)unit->Requests();
  Choose("mnu_clone_read");
  const QStringList requests = unit->Requests();
  EXPECT_EQ(requests
                .filter("F8410410"
                        "0AF")
                .size(),
            1);
  EXPECT_EQ(requests
                .filter("F8410410"
                        "0B0")
                .size(),
            3);
  EXPECT_EQ(requests
                .filter("F8410410"
                        "0B1")
                .size(),
            1);
  file_name = QDir::current().filePath("again.txt");
  Choose("mnu_file_save");
  QByteArray again = FileText("first.txt");
  again.replace("\n278, 48", "\n278, 16");
  const QByteArray lost = "\n163, 0 ," + QByteArray::number(first.at({163, 0})) + '\r';
  EXPECT_EQ(again.count(lost), 5);
  again.replace(lost, "\n163, 0 ,0\r");
  EXPECT_EQ(FileText("again.txt"), again);
}

/// A resolution data file of slots whose words are made of the bytes 0x11 and 0x13 alone.
/// @param top_weight what a count in the third byte of the horizontal frequency is worth
QByteArray ResolutionFile(int count, int top_weight) {
  const auto padded = [](const QByteArray& text, int width = 8) {
    return text.leftJustified(width, ' ', true);
  };
  QByteArray text =
      "Resolution Data File (c) Orvane Ltd\r\n"
      "                        1\r\n"
      "2008 - 8 - 1\r\n"
      "\r\n"
      "Name                      Flags   HWidth  VHeight HFreq   Vfreq   HTotal  VTotal  HSync   "
      "VSync   HPos    VPos    Misc\r\n"
      "\r\n";
  text += padded("", 26) + padded("");
  for (int column = 0; column < 10; ++column) text += padded("0");
  text += padded("") + "\r\n";
  static constexpr std::array kWords = {0x1111, 0x1113, 0x1311, 0x1313};
  constexpr std::array kLetters = {"R", "Y", "RCI", "RYCIU"};
  constexpr std::array kSyncs = {"PP", "NP", "PN", "NN"};
  for (std::size_t slot = 0; slot < static_cast<std::size_t>(count); ++slot) {
    const auto word = [slot](std::size_t column) { return kWords[(slot + column) % 4]; };
    const int frequency = word(2) + (slot % 2 == 0 ? 0 : 0x13 * top_weight);
    text += padded("Slot " + QByteArray::number(slot), 26) + padded(kLetters[slot % 4]);
    for (const int number :
         {word(0), word(1), frequency, 0, word(3), word(4), word(5), word(6), word(7), word(8)}) {
      text += padded(QByteArray::number(number));
    }
    text += padded(kSyncs[slot / 4 % 4]) + "\r\n";
  }
  return text;
}

TEST_F(EndToEndTransfer, AFetchBringsEverySlotWholeIntoTheFile) {
  constexpr int kSlots = 255;
  QFile table("table.txt");
  ASSERT_TRUE(table.open(QIODevice::WriteOnly));
  table.write(ResolutionFile(kSlots, 65536));
  table.close();
  ASSERT_NO_FATAL_FAILURE(StartAndOpen({"--resolutions", QFileInfo(table).absoluteFilePath()}));
  EXPECT_EQ(Form().cbo_resolution->count(), 106);

  const auto flow_control = [this] {
    termios line{};
    tcgetattr(panel->port.findChild<QSerialPort*>()->handle(), &line);
    return std::pair(line.c_iflag & (IXON | IXOFF | IXANY), line.c_cflag & CRTSCTS);
  };
  using Flags = decltype(flow_control());
  std::set<Flags> in_fetch;
  QTimer sampling;
  QObject::connect(&sampling, &QTimer::timeout, [&] { in_fetch.insert(flow_control()); });
  sampling.start(std::chrono::milliseconds(5));
  Choose("mnu_function_refreshRes");
  EXPECT_EQ(FileText("resdata.txt"), ResolutionFile(kSlots, 65535));
  sampling.stop();
  EXPECT_TRUE(in_fetch.contains(Flags(0, CRTSCTS)));
  EXPECT_EQ(flow_control(), Flags(IXON | IXOFF, CRTSCTS));
  EXPECT_TRUE(unit->Requests().filter("WRONG").isEmpty());

  StartPanel();
  const QComboBox& list = *Form().cbo_resolution;
  ASSERT_EQ(list.count(), kSlots + 1);
  EXPECT_EQ(list.itemText(0), QString(26, ' '));
  for (int i = 1; i < list.count(); ++i) {
    EXPECT_EQ(list.itemText(i).trimmed(), QString("Slot %1").arg(i - 1));
    EXPECT_EQ(list.itemData(i), i + 1);
  }
}

}  // namespace
}  // namespace kalde2
