// The pieces of one transaction and of what follows it, one by one.

#include <benchmark/benchmark.h>

#include <sstream>

#include "files/mod_resolutions.h"
#include "link/frame_codec.h"
#include "link/receive_ring.h"
#include "model/command_list.h"
#include "model/mod_Producttypes.h"
#include "simulator/unit.h"

namespace kalde2 {
namespace {

constexpr std::int32_t kProductType = 35;  // the one with the most parameters
constexpr ParameterRequest kWriteZoom{false, 16, 500, 134};

void BuildFrame(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(HexToWire(BuildRequest(kWriteZoom)));
}
BENCHMARK(BuildFrame);

void DecodeFrame(benchmark::State& state) {
  ReplyRecord record;
  for ([[maybe_unused]] auto _ : state) {
    DecodeReply("F441041010A000002A2\r", record);
    benchmark::DoNotOptimize(record);
  }
}
BENCHMARK(DecodeFrame);

/// As many unasked frames as the ring holds, in and out.
void RingOfFrames(benchmark::State& state) {
  constexpr int kFrames = 18;
  ReceiveRing ring;
  for ([[maybe_unused]] auto _ : state) {
    for (int i = 0; i < kFrames; ++i) ring.Store("F441041010A000002A2\r");
    for (int i = 0; i < kFrames; ++i) benchmark::DoNotOptimize(ring.NextFrame());
  }
  state.SetItemsProcessed(state.iterations() * kFrames);
}
BENCHMARK(RingOfFrames);

void LoadCatalogue(benchmark::State& state) {
  ParamCatalogue catalogue;
  for ([[maybe_unused]] auto _ : state) {
    AddProductEntries(catalogue, kProductType);
    benchmark::DoNotOptimize(catalogue);
  }
}
BENCHMARK(LoadCatalogue);

/// A unit's answer to a request: the share of the simulated unit in every measured round trip.
void UnitAnswer(benchmark::State& state) {
  SimulatedUnit unit({});
  const std::string request = HexToWire(BuildRequest(kWriteZoom));
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(unit.Receive(request));
}
BENCHMARK(UnitAnswer);

ResolutionTable FullTable() {
  ResolutionTable table;
  table.Reset(255);
  for (std::size_t entry = 1; entry <= 255; ++entry) {
    table.Record(entry) = {
        "1920 x 1080 60Hz", "RYC", 1920, 1080, 67.5, 60, 2200, 1125, 44, 5, 192, 41, "PP"};
  }
  return table;
}

void WriteResolutionFile(benchmark::State& state) {
  const ResolutionTable table = FullTable();
  for ([[maybe_unused]] auto _ : state) {
    std::ostringstream file;
    WriteResolutions(file, table);
    benchmark::DoNotOptimize(file);
  }
}
BENCHMARK(WriteResolutionFile);

void ReadResolutionFile(benchmark::State& state) {
  std::ostringstream written;
  WriteResolutions(written, FullTable());
  ResolutionTable table;
  for ([[maybe_unused]] auto _ : state) {
    std::istringstream file(written.str());
    benchmark::DoNotOptimize(ReadResolutions(file, table));
  }
}
BENCHMARK(ReadResolutionFile);

}  // namespace
}  // namespace kalde2
