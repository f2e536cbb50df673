#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "panel/dialogs.h"

namespace kalde2 {

/// Message boxes that answer at once.
class FakeBoxes : public MessageBoxes {
 public:
  struct Box {
    std::string prompt;
    BoxIcon icon = BoxIcon::kNone;
    std::string title;

    bool operator==(const Box&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Box& box) {
      return out << "{\"" << box.prompt << "\", icon " << static_cast<int>(box.icon) << ", \""
                 << box.title << "\"}";
    }
  };
  std::vector<Box> shown;
  std::vector<Box> confirmations;
  bool answer = true;  ///< OK

  void Show(std::string_view prompt, BoxIcon icon, std::string_view title) override {
    shown.push_back({std::string(prompt), icon, std::string(title)});
  }
  [[nodiscard]] bool Confirm(std::string_view prompt, std::string_view title) override {
    confirmations.push_back({std::string(prompt), BoxIcon::kNone, std::string(title)});
    return answer;
  }
};

/// File dialogs that answer with `name`, or cancel where there is none.
class FakeFileDialogs : public FileDialogs {
 public:
  std::optional<std::string> name;
  std::vector<FileDialogSetup> opened;
  std::vector<FileDialogSetup> saved;

  [[nodiscard]] std::optional<std::string> AskOpenName(const FileDialogSetup& setup) override {
    opened.push_back(setup);
    return name;
  }
  [[nodiscard]] std::optional<std::string> AskSaveName(const FileDialogSetup& setup) override {
    saved.push_back(setup);
    return name;
  }
};

}  // namespace kalde2
