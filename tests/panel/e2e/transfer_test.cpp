// Clone, settings file and resolution data between the window, the unit and the disk.

#include <map>

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
}

/// A resolution data file of slots whose words are made of the bytes 0x11 and 0x13 alone.
QByteArray ResolutionFile(int count) {
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
  text += padded("", 34) + padded("0").repeated(10) + padded("") + "\r\n";
  constexpr std::array kWords = {0x1111, 0x1113, 0x1311, 0x1313};
  constexpr int kVerticalFrequency = 3;
  for (int slot = 0; slot < count; ++slot) {
    text += padded("Slot " + QByteArray::number(slot), 26) + padded("RYCIU");
    for (int column = 0; column < 10; ++column) {
      const int word = kWords.at(static_cast<std::size_t>(slot + column) % kWords.size());
      text += padded(QByteArray::number(column == kVerticalFrequency ? 0 : word));
    }
    text += padded("NP") + "\r\n";
  }
  return text;
}

TEST_F(EndToEndTransfer, AFetchBringsEverySlotWholeIntoTheFile) {
  constexpr int kSlots = 255;
  QFile table("table.txt");
  ASSERT_TRUE(table.open(QIODevice::WriteOnly));
  table.write(ResolutionFile(kSlots));
  table.close();
  ASSERT_NO_FATAL_FAILURE(StartAndOpen({"--resolutions", QFileInfo(table).absoluteFilePath()}));
  Choose("mnu_function_refreshRes");
  EXPECT_EQ(FileText("resdata.txt"), ResolutionFile(kSlots));
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
