// How the program starts and ends.

#include <QElapsedTimer>
#include <QSettings>

#include "tests/support/e2e_fixture.h"

namespace kalde2 {
namespace {

/// A name under which no settings can be stored: a file stands where their folder would be.
QString FileInPlaceOfAFolder() {
  QFile file(QDir::current().filePath("no_folder"));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  return file.fileName();
}

TEST(PanelProgram, StartsSilentlyAndEndsOnASignal) {
  for (const QString& settings : {QDir::currentPath(), FileInPlaceOfAFolder()}) {
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", settings);
    program.setProcessEnvironment(environment);
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
}

class EndToEndShutdown : public EndToEnd {
 protected:
  static void StoreSettingsIn(const QString& folder) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
  }
  ~EndToEndShutdown() override { StoreSettingsIn(QDir::currentPath()); }
};

TEST_F(EndToEndShutdown, EndsAtOnceAlthoughNothingCanBeStored) {
  ASSERT_NO_FATAL_FAILURE(StartAndOpen());
  Form().txt_port->setText("7");
  StoreSettingsIn(FileInPlaceOfAFolder());
  QElapsedTimer time;
  time.start();
  Window().close();
  EXPECT_LT(time.elapsed(), 1000);
  EXPECT_EQ(panel->ends, 1);
  EXPECT_FALSE(Window().isVisible() || panel->port.PortOpen());
  EXPECT_EQ(Boxes(), QStringList());
  StoreSettingsIn(QDir::currentPath());
  StartPanel();
  EXPECT_EQ(Form().txt_port->text(), "1");
}

}  // namespace
}  // namespace kalde2
