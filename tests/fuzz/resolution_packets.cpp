/// The two packets of a resolution slot: the first one's length, then both, one behind the other.

#include <algorithm>

#include "files/mod_resolutions.h"
#include "tests/fuzz/fuzz_target.h"

namespace kalde2 {

void FuzzOne(std::string_view input) {
  if (input.empty()) return;
  const std::size_t split =
      std::min<std::size_t>(static_cast<unsigned char>(input[0]), input.size() - 1);
  const std::string_view packets = input.substr(1);
  ResolutionRecord record;
  DecodeFirstPacket(packets.substr(0, split), record);
  constexpr double kHighestFrequency = 255 + 256.0 * 255 + 65535.0 * 255;
  Require(record.Name.size() <= 24, "a name has at most 24 characters");
  Require(record.Flags.find_first_not_of("RYCIU") == std::string::npos, "flags are letters");
  Require(record.Misc.empty() || record.Misc.size() == 2, "polarities are two letters");
  Require(record.HFreq >= 0 && record.HFreq <= kHighestFrequency, "a frequency is a count");
  Require(record.VTotal >= 0, "lines are counted from 0");

  ResolutionRecord second = record;
  DecodeSecondPacket(packets.substr(split), second);
  Require(second.Name == record.Name && second.Flags == record.Flags &&
              second.HFreq == record.HFreq && second.Misc == record.Misc &&
              second.VTotal == record.VTotal && second.Vfreq == 0,
          "the second packet leaves the fields of the first alone");
}

}  // namespace kalde2
