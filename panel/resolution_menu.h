#pragma once

#include <string_view>

#include "files/mod_resolutions.h"
#include "panel/dialogs.h"
#include "panel/shown_progress.h"
#include "session/session_status.h"

namespace kalde2 {

/// The resolution data file of the panel, in the current folder.
inline constexpr std::string_view kResolutionFileName = "resdata.txt";

/// The resolution data as the operator meets them: the file in the current folder, and the words
/// for what went wrong.
class ResolutionMenu : private FetchEvents {
 public:
  ResolutionMenu(ResolutionTable& table, CommandLink& link, Clock& clock, frm_Progress& progress,
                 MessageBoxes& boxes, SessionStatus& status)
      : progress_(progress, clock, ShownProgress::Result::kStaysSlept),
        data_(table, link, progress_),
        boxes_(boxes),
        status_(status) {}

  /// Fetches the unit's resolutions into the file.
  void FetchResolutionData();

  /// The items of the resolution list. A file that is none of its kind is reported.
  [[nodiscard]] std::vector<ResolutionItem> FillResolutionList();

 private:
  void SlotBegins(std::size_t slot, std::size_t slot_count) override;
  void SlotUnread(std::size_t slot) override;
  void Fetched() override;

  ShownProgress progress_;
  ResolutionData data_;
  MessageBoxes& boxes_;
  SessionStatus& status_;
};

}  // namespace kalde2
