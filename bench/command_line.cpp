#include <QProcess>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/bare_line.h"
#include "bench/figures.h"
#include "bench/measurements.h"
#include "tests/support/helper_process.h"
#include "tests/support/unit_process.h"
#include "trace/trace_file.h"

namespace kalde2::bench {
namespace {

using Clock = std::chrono::steady_clock;

/// The milliseconds that a program takes from its start to its end. @throws std::runtime_error
double TimeOf(const QString& program, const QStringList& arguments = {}) {
  QProcess process;
  process.setStandardOutputFile(QProcess::nullDevice());
  const auto start = Clock::now();
  process.start(program, arguments);
  const bool ended = process.waitForFinished(-1) && process.exitCode() == 0;
  const auto time = Clock::now() - start;
  if (!ended) throw std::runtime_error(process.readAllStandardError().toStdString());
  return Milliseconds(time);
}

const QString kCtl = QStringLiteral(KALDE2_CTL);
const QStringList kPort = {"-p", "1", "-b", "57600"};

void MeasureGet() {
  constexpr int kStarts = 31;
  constexpr int kTrips = 51;
  constexpr std::chrono::milliseconds kRest{5};  // a program's first requests find an idle unit
  constexpr int kTransactions = 2;               // the product type and the value
  constexpr std::int16_t kAddress = 259;         // a number: no input is asked for its name
  UnitProcess unit({"--quiet"});
  BareLine bare(unit.Device(), 57600);
  std::vector<double> trips;
  for (int i = 0; i < kTrips; ++i) {
    std::this_thread::sleep_for(kRest);
    trips.push_back(bare.ReadAgain(kAddress, 1).front() / 1000);
  }
  const double trip = Median(trips);
  PrintFigure("round trip, bare loop to an idle unit: median", trip, "ms");
  // The best of several: what else the computer does in the midst of one is not the program's.
  double empty = std::numeric_limits<double>::max();
  double get = empty;
  for (int i = 0; i < kStarts; ++i) {
    empty = std::min(empty, TimeOf(QStringLiteral(KALDE2_EMPTY_PROGRAM)));
    get = std::min(get, TimeOf(kCtl, kPort + QStringList{"get", QString::number(kAddress)}));
  }
  PrintFigure("start to end: program with an empty QCoreApplication", empty, "ms");
  PrintFigure("start to end: kalde2ctl get", get, "ms");
  PrintAtMost("start to end, kalde2ctl get without its transactions to the empty program",
              (get - kTransactions * trip) / empty, "times", "1.5");
}

/// What goes over the line while a file is read.
double CharactersOfRead() {
  {
    const HelperProcess trace(kCtl, kPort + QStringList{"trace", "--as", "2", "--record", "trace"},
                              "port 2 is ");
    TimeOf(kCtl, {"-p", "2", "-b", "57600", "read", "read.txt"});
  }
  std::ifstream file("trace");
  double characters = 0;
  for (const TraceEvent& event : ReadTrace(file).trace.events) {
    characters += static_cast<double>(event.bytes.size());
  }
  return characters;
}

void MeasureRead() {
  constexpr int kBaud = 57600;
  constexpr int kRuns = 6;
  UnitProcess unit({"--quiet", "--baud", QString::number(kBaud), "--type", "35", "--sources",
                    "16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31"});
  const double wire = 1000 * CharactersOfRead() * kBitsPerCharacter / kBaud;
  double best = std::numeric_limits<double>::max();
  for (int i = 0; i < kRuns; ++i) {
    best = std::min(best, TimeOf(kCtl, kPort + QStringList{"read", "read.txt"}));
  }
  PrintAtLeast("kalde2ctl read, 16 sources at 57600 baud, start to end, of the wire's rate",
               100 * wire / best, "%", "97");
}

}  // namespace

void MeasureCommandLine() {
  MeasureGet();
  MeasureRead();
}

}  // namespace kalde2::bench
