// What kalde2ctl saves is, byte for byte, what the panel saves of the same unit.

#include <QDir>

#include "tests/support/ctl_process.h"
#include "tests/support/e2e_fixture.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

TEST_F(EndToEnd, KaldeCtlSavesWhatThePanelSaves) {
  const QStringList units[] = {
      {"--type", "35"},
      {"--type", "22", "--sources", "16"},
      {"--type", "63", "--sources", "16,48,64", "--fault", "refuse=156"},
      {"--type", "28", "--sources", "none"},
  };
  for (const QStringList& options : units) {
    const TempFolder folder;
    ASSERT_NO_FATAL_FAILURE(StartUnit(options));
    unit->Command("set 187 77 0\nset 159 30");
    EXPECT_EQ(unit->Value(159), 30);
    StartPanel();
    Press("Cmd_openclose");
    Choose("mnu_clone_read");
    file_name = QDir::current().filePath("panel.txt");
    Choose("mnu_file_save");
    if (options.contains("22")) Choose("mnu_function_refreshRes");
    panel.reset();

    (void)RunCtl("kalde2ctl read ctl.txt");
    EXPECT_EQ(ReadText("ctl.txt"), ReadText("panel.txt")) << options.join(' ').toStdString();
    if (!options.contains("22")) continue;
    EXPECT_EQ(RunCtl("kalde2ctl resolutions ctl_resolutions.txt").status, 0);
    EXPECT_EQ(ReadText("ctl_resolutions.txt"), ReadText("resdata.txt"));
  }
}

TEST_F(EndToEnd, KaldeCtlWritesWhatThePanelWrites) {
  const TempFolder folder;
  StartUnit({"--type", "22"});
  ASSERT_EQ(RunCtl("kalde2ctl read unit.txt").status, 0);
  unit->Command("set 134 150\nset 159 30");
  StartPanel();
  Press("Cmd_openclose");
  file_name = QDir::current().filePath("unit.txt");
  Choose("mnu_file_load");
  (void)unit->Requests();
  Choose("menu_clone_write");
  const QStringList of_panel = unit->Requests();
  panel.reset();
  EXPECT_EQ(RunCtl("kalde2ctl write unit.txt").status, 0);
  EXPECT_EQ(unit->Requests().filter("F04").join('\n').toStdString(),
            of_panel.join('\n').toStdString());
}

}  // namespace
}  // namespace kalde2
