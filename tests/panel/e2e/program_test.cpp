// The executable of the panel.

#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

TEST(PanelProgram, StartsSilentlyAndEndsOnASignal) {
  QProcess program;
  program.setProcessChannelMode(QProcess::MergedChannels);
  program.start(KALDE2_PANEL, QStringList());
  ASSERT_TRUE(program.waitForStarted());
  EXPECT_FALSE(program.waitForFinished(1000)) << "it should run until it is ended";
  program.terminate();
  EXPECT_TRUE(program.waitForFinished(2000));
  // What the headless display itself has to say.
  QByteArray output = program.readAll();
  output.replace("This plugin does not support propagateSizeHints()\n", "");
  EXPECT_EQ(output.toStdString(), "");
}

}  // namespace
}  // namespace kalde2
