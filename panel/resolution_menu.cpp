#include "panel/resolution_menu.h"

#include <utility>

namespace kalde2 {

std::vector<ResolutionItem> ResolutionMenu::FillResolutionList() {
  ResolutionData::List list = data_.FillResolutionList(kResolutionFileName);
  if (!list.problem.empty()) boxes_.Show(list.problem, BoxIcon::kNone, "");
  return std::move(list.items);
}

void ResolutionMenu::SlotUnread(std::size_t /*slot*/) {
  boxes_.Show("Problem reading resolution information from scaler, please try again",
              BoxIcon::kExclamation, "");
}

}  // namespace kalde2
