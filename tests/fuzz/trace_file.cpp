/// Trace files, one input one file: reading, writing again, and answering from what was read.

#include "trace/trace_file.h"

#include <sstream>

#include "tests/fuzz/fuzz_target.h"
#include "trace/frame_cutter.h"
#include "trace/recorded_replies.h"

namespace kalde2 {
namespace {

std::string Written(const Trace& trace) {
  std::ostringstream file;
  BeginTrace(file, trace.baud);
  for (const TraceEvent& event : trace.events) WriteEvent(file, event);
  return file.str();
}

}  // namespace

void FuzzOne(std::string_view input) {
  std::istringstream file{std::string(input)};
  const TraceReading reading = ReadTrace(file);
  Require(!reading.problem || reading.problem->line > 0, "a problem has a line");
  std::istringstream again(Written(reading.trace));
  Require(ReadTrace(again).trace == reading.trace, "a trace survives its file");

  RecordedReplies replies(reading.trace.events);
  FrameCutter cutter;
  for (const TraceEvent& event : reading.trace.events) {
    for (const FrameCutter::Piece& piece : cutter.Put(event.bytes)) {
      Require(!piece.bytes.empty(), "no piece is empty");
      (void)replies.Next(piece.bytes);
    }
  }
}

}  // namespace kalde2
