/// Resolution data files, one input one file: reading, and what becomes of it in the next file.

#include <sstream>

#include "files/mod_resolutions.h"
#include "tests/fuzz/fuzz_target.h"

namespace kalde2 {
namespace {

std::string_view Read(const std::string& text, ResolutionTable& table) {
  std::istringstream file(text);
  return ReadResolutions(file, table);
}

/// Writes a table and reads it again.
ResolutionTable Rewritten(const ResolutionTable& table) {
  std::ostringstream file;
  WriteResolutions(file, table);
  ResolutionTable again;
  Require(Read(file.str(), again).empty(), "what is written has a right header");
  Require(again.Size() == table.Size() + 1, "every entry is one record");
  return again;
}

}  // namespace

void FuzzOne(std::string_view input) {
  ResolutionTable table;
  const bool is_wrong = !Read(std::string(input), table).empty();
  Require(table.Size() >= 1 && table.Record(0) == ResolutionRecord{}, "entry 0 is empty");
  Require(!is_wrong || table.Size() == 1, "a wrong header leaves one entry");
  // The first writing cuts and pads the columns; from then on a record only moves up by one.
  const ResolutionTable once = Rewritten(table);
  const ResolutionTable twice = Rewritten(once);
  for (std::size_t entry = 1; entry < once.Size(); ++entry) {
    Require(twice.Record(entry + 1) == once.Record(entry), "a record survives its file");
  }
}

}  // namespace kalde2
