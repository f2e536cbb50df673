#pragma once

#include <cstdint>

#include "link/mod_comms.h"
#include "model/command_list.h"
#include "model/reply_display.h"
#include "panel/vornik_form.h"
#include "session/operator_queue.h"

namespace kalde2 {

/// The command list and its value editor on the main window.
class CommandEditor {
 public:
  CommandEditor(VornikForm& form, const CommandList& list, CommandLink& link, ValueStore& values,
                RefreshTimer& refresh, OperatorQueue& queue);

  /// Rebuilds the list. Nothing is selected afterwards.
  void RefreshCommandList();

  /// Selects `SavedCommandLine` again and prepares its value editor; a line past the end selects
  /// nothing. A value that the operator is just typing or choosing is left to him.
  void SelectSavedLine();

  /// Prepares the value editor for the selected line. The line that the list merely marks when the
  /// focus comes is not selected.
  void lst_commands_Click();

  void cbo_command_Click();
  void cmd_commandMinus_Click() { Step(-1); }
  void cmd_commandplus_Click() { Step(+1); }

  /// Enter in `txt_commandval`: sends a number in the parameter's range and ignores any other.
  void txt_commandval_Enter();

  /// The operator types: the field shows whether the number is another than the recorded one.
  void txt_commandval_Edit() { ShowWhetherSent(); }

  /// The focus leaves `txt_commandval`: what was typed and not sent is forgotten, unless the focus
  /// is about to come back, as from a menu or another window.
  void txt_commandval_Leave(Qt::FocusReason reason);

  [[nodiscard]] CatalogueIndex CurrentCommand() const { return current_command_; }
  [[nodiscard]] int SavedCommandLine() const { return saved_command_line_; }

 private:
  void PrepareEditor(CatalogueIndex index);
  void FillChoices(CatalogueIndex index);
  void ShowEditor(bool as_list);
  void Step(int step);
  void Change(std::int32_t value);
  void ShowRecorded();
  void ShowWhetherSent();
  [[nodiscard]] bool IsSent(const QString& typed) const;
  [[nodiscard]] bool IsBeingEdited(CatalogueIndex index) const;

  VornikForm& form_;
  const CommandList& list_;
  CommandLink& link_;
  ValueStore& values_;
  RefreshTimer& refresh_;
  OperatorQueue& queue_;
  CatalogueIndex current_command_;
  int saved_command_line_ = 0;
};

}  // namespace kalde2
