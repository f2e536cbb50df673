/// Settings files, one input one file.

#include <sstream>

#include "files/mod_FileHandler.h"
#include "link/fault.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/fake_link.h"

namespace kalde2 {

void FuzzOne(std::string_view input) {
  LinkFixture panel;
  panel.LoadProduct(35);
  SettingsFile settings(panel.catalogue, panel.connectivity, panel.values, panel.link, panel.boxes,
                        panel.dialogs);
  std::istringstream file{std::string(input)};
  try {
    settings.ApplySettings(file);
  } catch (const Fault& fault) {
    Require(std::string_view(fault.what()).starts_with("line "), "a malformed line is named");
  }
  Require(panel.port.written.empty(), "loading sends nothing");
  Require(input.starts_with("[1.0]") || panel.display.log.empty(), "other files load nothing");
}

}  // namespace kalde2
