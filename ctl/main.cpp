// kalde2ctl: a unit from the command line.

#include <QCoreApplication>
#include <cstdio>
#include <string_view>

#include "adapters/end_signals.h"
#include "adapters/qt_clock.h"
#include "adapters/qt_serial_port.h"
#include "adapters/qt_settings_store.h"
#include "adapters/standard_streams.h"
#include "ctl/command_line.h"
#include "ctl/completion.h"

namespace {

using kalde2::ExitStatus;

/// The port and the rate that are given, or else those that the panel used last.
kalde2::PortChoice ReadChoice(const QCommandLineParser& options) {
  const QString port = QStringLiteral("port");
  const QString baud = QStringLiteral("baud");
  kalde2::PortChoice choice{options.value(port).toStdString(), options.value(baud).toStdString()};
  if (options.isSet(port) && options.isSet(baud)) return choice;
  const kalde2::SerialSettings last = kalde2::LoadSerialSettings(kalde2::QtSettingsStore());
  if (!options.isSet(port)) choice.port = last.port;
  if (!options.isSet(baud)) choice.baud = last.baud;
  return choice;
}

ExitStatus Run(const kalde2::Invocation& invocation, const QCommandLineParser& options,
               kalde2::Console& console) {
  const kalde2::PortChoice choice = ReadChoice(options);
  const kalde2::ChosenPort directory(choice);
  kalde2::QtSerialPort port(directory);
  kalde2::QtClock clock;
  kalde2::UnitAccess unit(port, clock, choice);
  const kalde2::EndSignals signals_to_end;
  QObject::connect(&signals_to_end, &kalde2::EndSignals::Raised, [&unit] { unit.Interrupt(); });

  kalde2::CommandContext context{.arguments = invocation.arguments,
                                 .options = options,
                                 .json = options.isSet(QStringLiteral("json")),
                                 .choice = choice,
                                 .port = port,
                                 .clock = clock,
                                 .unit = unit,
                                 .console = console};
  if (invocation.command->needs == kalde2::Needs::kUnit) unit.Open();
  const ExitStatus status = invocation.command->run(context);
  console.Flush();
  return status;
}

}  // namespace

int main(int argc, char* argv[]) {
  kalde2::SurviveClosedPipes();
  kalde2::SpeakUtf8();
  QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kalde2ctl"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KALDE2_VERSION));
  kalde2::Console console;
  if (argc > 1 && std::string_view(argv[1]) == kalde2::kCompletionRequest) {
    for (const std::string& word : kalde2::Completions({argv + 2, argv + argc})) {
      std::puts(word.c_str());
    }
    return static_cast<int>(ExitStatus::kDone);
  }
  QCommandLineParser parser;
  try {
    const kalde2::Invocation invocation =
        kalde2::ReadCommandLine(QCoreApplication::arguments(), parser);
    if (invocation.command != nullptr) return static_cast<int>(Run(invocation, parser, console));
    std::fputs(invocation.text.c_str(), stdout);
    console.Flush();
    return static_cast<int>(ExitStatus::kDone);
  } catch (const kalde2::CommandFault& fault) {
    console.Note(fault.what());
    return static_cast<int>(fault.Status());
  } catch (const kalde2::Fault& fault) {
    console.Note(fault.what());
    return static_cast<int>(ExitStatus::kNoUnit);
  }
}
