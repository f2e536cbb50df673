#pragma once

#include <QPointer>
#include <QWidget>

#include "panel/dialogs.h"

namespace kalde2 {

/// Message boxes over a window. Prompts are plain text, whatever they look like. A box without a
/// title bears that of the window.
class QtMessageBoxes final : public MessageBoxes {
 public:
  /// The window that boxes stand over from now on, nullptr for none.
  void SetParent(QWidget* parent) { parent_ = parent; }

  void Show(std::string_view prompt, BoxIcon icon, std::string_view title) override;
  [[nodiscard]] bool Confirm(std::string_view prompt, std::string_view title) override;

 private:
  QPointer<QWidget> parent_;
};

/// File dialogs over a window.
class QtFileDialogs final : public FileDialogs {
 public:
  /// The window that dialogs stand over from now on, nullptr for none.
  void SetParent(QWidget* parent) { parent_ = parent; }

  [[nodiscard]] std::optional<std::string> AskOpenName(const FileDialogSetup& setup) override;
  [[nodiscard]] std::optional<std::string> AskSaveName(const FileDialogSetup& setup) override;

 private:
  QPointer<QWidget> parent_;
};

}  // namespace kalde2
