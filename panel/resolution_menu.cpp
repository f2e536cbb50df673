#include "panel/resolution_menu.h"

#include <utility>

namespace kalde2 {
namespace {

/// The scope of a fetch: at its end no slot is asked for any more.
struct FetchScope {
  SessionStatus& status;

  ~FetchScope() { status.FetchEnded(); }
};

}  // namespace

std::vector<ResolutionItem> ResolutionMenu::FillResolutionList() {
  ResolutionData::List list = data_.FillResolutionList(kResolutionFileName);
  if (!list.problem.empty()) boxes_.Show(list.problem, BoxIcon::kNone, "");
  return std::move(list.items);
}

void ResolutionMenu::FetchResolutionData() {
  const FetchScope fetch{status_};
  (void)data_.FetchResolutionData(*this);
}

void ResolutionMenu::SlotBegins(std::size_t slot, std::size_t slot_count) {
  status_.SlotBegins(slot, slot_count);
}

void ResolutionMenu::Fetched() {
  if (data_.WriteResolutionFile(kResolutionFileName)) status_.ResolutionsSaved();
}

void ResolutionMenu::SlotUnread(std::size_t /*slot*/) {
  boxes_.Show("Problem reading resolution information from scaler, please try again",
              BoxIcon::kExclamation, "");
}

}  // namespace kalde2
