// kalde2-unit: a simulated unit on a pseudo-terminal.

#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStandardPaths>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>

#include "adapters/signal_pipe.h"
#include "adapters/standard_streams.h"
#include "simulator/faults.h"
#include "simulator/unit_loop.h"
#include "trace/trace_file.h"

namespace {

using kalde2::LoopOptions;
using kalde2::UnitOptions;

struct Settings {
  UnitOptions unit;
  LoopOptions loop;
  std::vector<std::string> faults;
};

QList<QCommandLineOption> Options() {
  return {
      {"port", "Port number that stands for the unit (default 1).", "NUMBER", "1"},
      {"type", "Product type, any number (default 35).", "NUMBER", "35"},
      {"sources", "Fitted sources, or none (default 16,17,48,64,80).", "LIST", "16,17,48,64,80"},
      {"baud", "Rate of the line; without it any rate will do and nothing is paced.", "RATE", "0"},
      {"latency", "Time from a request to its reply (default 0).", "MS", "0"},
      {"autoset-reads", "Status reads that autoset stays busy for (default 3).", "COUNT", "3"},
      {"resolutions", "Count (0..255) of built-in resolutions, or a resolution data file.",
       "COUNT|FILE", QString::number(kalde2::kFactoryResolutionSlots)},
      {"replay", "Answer as the unit of a trace file did, and refuse what was never asked there.",
       "FILE"},
      {"fault",
       "A fault, may be repeated; help on standard input explains them: " +
           QString::fromStdString(kalde2::FaultNames()) + '.',
       "NAME[=NUMBERS]"},
      {"quiet", "Print no line for each frame."},
  };
}

void DefineOptions(QCommandLineParser& parser) {
  parser.setApplicationDescription(
      "A simulated unit on a pseudo-terminal, linked as a port of the control panel.\n"
      "Type help on its standard input for its front panel.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions(Options());
}

/// What could have been given: "--port NUMBER, --type NUMBER, ...".
std::string OptionNames() {
  QStringList names;
  for (const QCommandLineOption& option : Options()) {
    names << QString("--%1 %2").arg(option.names().constFirst(), option.valueName()).trimmed();
  }
  return (names.join(", ") + ", --help").toStdString();
}

/// Reads the options of the command line; the first that is wrong ends the reading.
class SettingsReader {
 public:
  explicit SettingsReader(const QCommandLineParser& parser) : parser_(parser) {}

  std::optional<Settings> Read() {
    Settings settings;
    settings.loop.port = Number("port", 0, 32767);
    settings.loop.baud = Number("baud", 0, 4'000'000);
    settings.loop.quiet = parser_.isSet("quiet");
    settings.loop.link_folder =
        (QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/KALDE2/ports")
            .toStdString();
    settings.unit.product_type = Number("type", -0x800000, 0x7FFFFF);
    settings.unit.latency = std::chrono::milliseconds(Number("latency", 0, 600'000));
    settings.unit.autoset_reads = Number("autoset-reads", 0, 1'000'000);
    ReadSources(settings.unit);
    ReadResolutions(settings.unit);
    if (parser_.isSet("replay")) ReadRecorded(settings.unit);
    for (const QString& fault : parser_.values("fault")) {
      settings.faults.push_back(fault.toStdString());
    }
    if (!problem_.empty()) return std::nullopt;
    return settings;
  }

  [[nodiscard]] const std::string& Problem() const { return problem_; }

 private:
  int Number(const QString& option, int least, int most) {
    const QString text = parser_.value(option);
    const std::optional<int> number = kalde2::ReadNumber(text.trimmed().toStdString());
    if (number && *number >= least && *number <= most) return *number;
    Complain(QString("--%1 takes %2..%3, not \"%4\"").arg(option).arg(least).arg(most).arg(text));
    return least;
  }

  void ReadSources(UnitOptions& unit) {
    unit.fitted_sources.clear();
    const QString list = parser_.value("sources");
    if (list == "none") return;
    for (const QString& word : list.split(',')) {
      const std::optional<int> source = kalde2::ReadNumber(word.trimmed().toStdString());
      if (!source || *source < 0 || *source >= kalde2::kSourceCodes) {
        Complain(QString("--sources takes numbers of 0..%1 with commas between them, or none, not "
                         "\"%2\"")
                     .arg(kalde2::kSourceCodes - 1)
                     .arg(list));
        return;
      }
      unit.fitted_sources.push_back(*source);
    }
  }

  void ReadResolutions(UnitOptions& unit) {
    const std::string text = parser_.value("resolutions").toStdString();
    if (const std::optional<int> count = kalde2::ReadNumber(text)) {
      unit.resolutions =
          kalde2::BuiltInResolutions(Number("resolutions", 0, kalde2::kMaxResolutionSlots));
      return;
    }
    kalde2::ResolutionReading reading = kalde2::ReadResolutionSlots(text);
    if (!reading.problem.empty()) {
      Complain(QString("--resolutions takes 0..%1 or a file: %2")
                   .arg(kalde2::kMaxResolutionSlots)
                   .arg(QString::fromStdString(reading.problem)));
    }
    unit.resolutions = std::move(reading.resolutions);
  }

  /// The recorded unit's type gives the frames their names.
  void ReadRecorded(UnitOptions& unit) {
    const std::string name = parser_.value("replay").toStdString();
    std::ifstream file(name, std::ios::binary);
    const kalde2::TraceReading reading = kalde2::ReadTrace(file);
    if (!file.is_open()) Complain(QString::fromStdString("cannot read " + name));
    if (reading.problem) {
      Complain(QString::fromStdString(name + ':' + std::to_string(reading.problem->line) + ": " +
                                      reading.problem->text));
    }
    unit.recorded.emplace(reading.trace.events);
    if (parser_.isSet("type")) return;
    kalde2::RecordedReplies replies = *unit.recorded;
    const auto type = kalde2::ReadOwnReply(replies.Next("F84104100C499\r").value_or(""));
    if (type) unit.product_type = type->value;
  }

  void Complain(const QString& problem) {
    if (problem_.empty()) problem_ = problem.toStdString();
  }

  const QCommandLineParser& parser_;
  std::string problem_;
};

int Fail(const std::string& problem) {
  std::cerr << "kalde2-unit: " << problem << '\n';
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char* argv[]) {
  kalde2::SurviveClosedPipes();
  kalde2::SpeakUtf8();
  QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName("kalde2-unit");
  QCoreApplication::setApplicationVersion(KALDE2_VERSION);
  QCommandLineParser parser;
  DefineOptions(parser);
  const bool is_understood = parser.parse(QCoreApplication::arguments());
  const QStringList words = parser.positionalArguments();
  if (!is_understood || !words.isEmpty()) {
    const QString problem =
        is_understood ? '"' + words.constFirst() + "\" is no option." : parser.errorText();
    return Fail(problem.toStdString() + " The options are " + OptionNames());
  }
  parser.process(application);  // --help and --version end here

  SettingsReader reader(parser);
  const std::optional<Settings> settings = reader.Read();
  if (!settings) return Fail(reader.Problem());

  // What a script starts in its background ignores Ctrl+C; the unit is to take its link away all
  // the same, and outlives the reader of its output.
  const kalde2::SignalPipe end_signals(kalde2::SignalPipe::Ignored::kCaught);
  kalde2::UnitLoop loop(settings->unit, settings->loop,
                        [](const std::string& line) { std::cout << line << std::endl; });
  for (const std::string& fault : settings->faults) {
    if (const auto problem = loop.Unit().AddFault(fault)) return Fail(*problem);
  }
  if (const auto problem = loop.Plug()) return Fail(*problem);
  loop.Run(end_signals.Descriptor(), STDIN_FILENO);
  return EXIT_SUCCESS;
}
