/// Settings files, one input one file.

#include <sstream>

#include "files/mod_FileHandler.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/fake_link.h"

namespace kalde2 {

void FuzzOne(std::string_view input) {
  LinkFixture panel;
  panel.LoadProduct(35);
  std::istringstream file{std::string(input)};
  (void)IsFault([&] { ReadSettings(file, panel.model); });
  Require(panel.port.written.empty(), "loading sends nothing");
  Require(input.starts_with("[1.0]") || panel.display.log.empty(), "other files load nothing");
}

}  // namespace kalde2
