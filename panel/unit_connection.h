#pragma once

#include <functional>
#include <string>

#include "panel/dialogs.h"
#include "panel/frm_Progress.h"
#include "panel/shown_progress.h"
#include "panel/vornik_form.h"
#include "session/session.h"

namespace kalde2 {

/// Opening and closing of the port as the operator meets them: what the form shows of the session,
/// and the words for what went wrong.
class UnitConnection {
 public:
  /// The steps that follow the loading of the tables, in this order.
  struct Steps {
    std::function<void()> refresh_command_list;
    std::function<void()> fill_source_combos;
  };

  UnitConnection(VornikForm& form, Session& session, OperatorQueue& queue, Clock& clock,
                 RefreshTimer& refresh, frm_Progress& progress, MessageBoxes& boxes, Steps steps);

  /// Opens the port that the form names, and on a supported product enables what it offers and
  /// fills the tables. Otherwise tells the operator why not and leaves the panel closed.
  void Open();

  /// Closes the port and the panel.
  void Close();

  /// Closes the port and says so on the form, without touching the panel's controls: the program
  /// ends.
  void ShutPort();

  // What the session tells in the midst of an opening, and of its loss.
  void ShowPortOpen();
  void ShowUnit(const Product& product);
  void ShowLoss(const std::string& reason);

 private:
  void LoadTables();
  void ShowPanelClosed();

  VornikForm& form_;
  Session& session_;
  OperatorQueue& queue_;
  RefreshTimer& refresh_;
  frm_Progress& progress_;
  ShownProgress connectivity_progress_;
  MessageBoxes& boxes_;
  Steps steps_;
};

}  // namespace kalde2
