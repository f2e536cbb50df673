#include "panel/command_editor.h"

#include <QAbstractItemView>
#include <QScrollBar>
#include <QSignalBlocker>

#include "controls/painting.h"
#include "files/skip_on_fault.h"
#include "link/fault.h"

namespace kalde2 {
namespace {

QString FromLatin1(const std::string& text) {
  return QString::fromLatin1(text.c_str());
}

/// The parameter of a line of the command list.
CatalogueIndex IndexOfLine(const QListWidgetItem& line) {
  return {static_cast<std::int16_t>(line.data(Qt::UserRole).toInt())};
}

/// Each parameter counts as a control of its own while its sending has to wait.
std::string QueueName(CatalogueIndex index) {
  return OperatorQueue::PartName("lst_commands", index.number);
}

}  // namespace

CommandEditor::CommandEditor(VornikForm& form, const CommandList& list, CommandLink& link,
                             ValueStore& values, RefreshTimer& refresh, OperatorQueue& queue)
    : form_(form), list_(list), link_(link), values_(values), refresh_(refresh), queue_(queue) {}

void CommandEditor::RefreshCommandList() {
  QListWidget& box = *form_.lst_commands;
  const QSignalBlocker quiet(box);
  const int scrolled = box.verticalScrollBar()->value();
  box.setUpdatesEnabled(false);
  box.clear();
  for (const CommandLine& line : list_.Lines()) {
    auto* const item = new QListWidgetItem(FromLatin1(line.text), &box);
    item->setData(Qt::UserRole, static_cast<int>(line.index.number));
  }
  box.verticalScrollBar()->setValue(scrolled);
  box.setUpdatesEnabled(true);
}

void CommandEditor::SelectSavedLine() {
  QListWidget& box = *form_.lst_commands;
  const QListWidgetItem* const line = box.item(saved_command_line_);
  if (line == nullptr) return;
  {
    const QSignalBlocker quiet(box);
    const int scrolled = box.verticalScrollBar()->value();
    box.setCurrentRow(saved_command_line_);
    box.verticalScrollBar()->setValue(scrolled);
  }
  if (IsBeingEdited(IndexOfLine(*line))) {
    ShowWhetherSent();
  } else {
    lst_commands_Click();
  }
}

bool CommandEditor::IsBeingEdited(CatalogueIndex index) const {
  if (index != current_command_) return false;
  return form_.cbo_command->view()->isVisible() ||
         (form_.txt_commandval->isVisible() && form_.txt_commandval->hasFocus() &&
          form_.txt_commandval->isModified());
}

void CommandEditor::lst_commands_Click() {
  const auto selected = form_.lst_commands->selectedItems();
  if (selected.isEmpty()) return;
  const QListWidgetItem* const line = selected.front();
  current_command_ = IndexOfLine(*line);
  try {
    PrepareEditor(current_command_);
  } catch (const Fault&) {
    // What could be prepared stays.
  }
  saved_command_line_ = form_.lst_commands->row(line);
}

void CommandEditor::PrepareEditor(CatalogueIndex index) {
  const bool as_list = index == CommandList::kResolution || list_.Record(index).HasList;
  ShowEditor(as_list);
  if (as_list) {
    FillChoices(index);
  } else {
    const ParamRecord& record = list_.Record(index);
    form_.txt_commandval->setToolTip(
        QStringLiteral("%1 to %2. Enter sends").arg(record.MinValue).arg(record.MaxValue));
    ShowRecorded();
  }
}

void CommandEditor::ShowRecorded() {
  SkipOnFault([this] {
    form_.txt_commandval->setText(QString::number(list_.CurrentValue(current_command_)));
  });
  ShowWhetherSent();
}

/// A number that the unit has not been sent, or cannot be, stands on a tinted ground.
void CommandEditor::ShowWhetherSent() {
  QLineEdit& field = *form_.txt_commandval;
  QPalette own;
  if (!IsSent(field.text())) {
    constexpr float kTint = 0.3F;
    const QPalette& colors = field.parentWidget()->palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
      own.setColor(group, QPalette::Base,
                   Blend(colors.color(group, QPalette::Base),
                         colors.color(group, QPalette::Highlight), kTint));
    }
  }
  field.setPalette(own);
}

bool CommandEditor::IsSent(const QString& typed) const {
  if (queue_.HasKept(QueueName(current_command_))) return false;
  bool is_sent = false;
  SkipOnFault([&] {
    std::int32_t value = 0;
    is_sent = list_.ReadTyped(current_command_, typed.toLatin1().toStdString(), value) &&
              value == list_.CurrentValue(current_command_);
  });
  return is_sent;
}

void CommandEditor::ShowEditor(bool as_list) {
  form_.lbl_command->show();
  form_.cbo_command->setVisible(as_list);
  form_.cmd_commandMinus->setVisible(!as_list);
  form_.cmd_commandplus->setVisible(!as_list);
  form_.txt_commandval->setVisible(!as_list);
}

void CommandEditor::FillChoices(CatalogueIndex index) {
  QComboBox& combo = *form_.cbo_command;
  combo.clear();
  if (index == CommandList::kResolution) {
    for (int i = 0; i < form_.cbo_resolution->count(); ++i) {
      combo.addItem(form_.cbo_resolution->itemText(i));
    }
    const std::int32_t position = list_.CurrentValue(index);
    combo.setCurrentIndex(position < combo.count() ? position : -1);
    return;
  }
  for (const ValueItem& item : list_.Choices(index))
    combo.addItem(FromLatin1(item.label), item.data);
  combo.setCurrentIndex(list_.CurrentChoice(index));
}

void CommandEditor::cbo_command_Click() {
  Change(list_.Record(current_command_).UseItemData ? form_.cbo_command->currentData().toInt()
                                                    : form_.cbo_command->currentIndex());
}

void CommandEditor::Step(int step) {
  if (queue_.IsBulk()) return;
  const std::int32_t value = list_.SteppedValue(current_command_, step);
  form_.txt_commandval->setText(QString::number(value));
  Change(value);
}

void CommandEditor::txt_commandval_Leave(Qt::FocusReason reason) {
  const bool comes_back = reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
                          reason == Qt::ActiveWindowFocusReason;
  if (!comes_back && !form_.txt_commandval->isHidden()) ShowRecorded();
}

void CommandEditor::txt_commandval_Enter() {
  // Also a number that is refused is no longer being typed: the next rebuild replaces it.
  form_.txt_commandval->setModified(false);
  std::int32_t value = 0;
  if (!list_.ReadTyped(current_command_, form_.txt_commandval->text().toLatin1().toStdString(),
                       value)) {
    return;
  }
  Change(value);
}

/// Stores and sends.
void CommandEditor::Change(std::int32_t value) {
  const CatalogueIndex index = current_command_;
  const std::int16_t source = list_.WriteSource(index);
  const auto store = [this, index, value] {
    values_.StoreParamValue(index, value);
    ShowWhetherSent();
  };
  const auto send = [this, index, value, source, store] {
    store();
    (void)link_.SendParameter(kWrite, source, value, AddressOf(index));
    refresh_.Enable();
  };
  queue_.Do(QueueName(index), send, store);
  ShowWhetherSent();  // it may have to wait
}

}  // namespace kalde2
