#include "ctl/completion.h"

#include <QString>
#include <QStringList>
#include <algorithm>
#include <string_view>

#include "ctl/command_table.h"
#include "model/mod_Producttypes.h"

namespace kalde2 {
namespace {

/// The options that may stand where the command is or is not yet known.
std::vector<OptionRow> OptionsOf(const CommandRow* command) {
  std::vector<OptionRow> rows(CommonOptions().begin(), CommonOptions().end());
  if (command != nullptr) {
    rows.insert(rows.end(), command->options.begin(), command->options.end());
  }
  return rows;
}

/// True for the option behind which a value follows as a word of its own.
bool TakesNextWord(const std::string& word, const CommandRow* command) {
  return std::ranges::any_of(OptionsOf(command), [&](const OptionRow& row) {
    const std::string name(row.name);
    return row.value_name != nullptr &&
           (word == "--" + name || word == std::string{'-', name.front()});
  });
}

std::vector<std::string> OptionWords(const CommandRow* command) {
  std::vector<std::string> words = {"--help", "--version"};
  for (const OptionRow& row : OptionsOf(command)) words.push_back("--" + std::string(row.name));
  return words;
}

std::vector<std::string> Arguments(const CommandRow& command) {
  std::vector<std::string> words;
  const std::string_view end = command.words == Words::kAssignments ? "=" : "";
  switch (command.words) {
    case Words::kParameters:
    case Words::kAssignments:
      for (const std::string_view name : ParameterNames()) {
        words.push_back(std::string(name).append(end));
      }
      break;
    case Words::kChoice:
      for (const QString& choice : QString(command.arguments).split('|')) {
        words.push_back(choice.toStdString());
      }
      break;
    case Words::kNone:
    case Words::kFiles:
      break;
  }
  return words;
}

std::vector<std::string> Candidates(const std::vector<std::string>& words) {
  const CommandRow* command = nullptr;
  bool is_value = false;
  for (auto word = words.begin(); word + 1 != words.end(); ++word) {
    const bool is_option = !is_value && word->starts_with('-');
    if (command == nullptr && !is_option && !is_value) {
      command = FindCommand(*word);
      if (command == nullptr) return {};
    }
    is_value = is_option && TakesNextWord(*word, command);
  }
  if (is_value) return {};
  if (words.back().starts_with('-')) return OptionWords(command);
  if (command != nullptr) return Arguments(*command);
  std::vector<std::string> names;
  for (const CommandRow& row : Commands()) names.emplace_back(row.name);
  return names;
}

}  // namespace

std::vector<std::string> Completions(const std::vector<std::string>& words) {
  if (words.empty()) return {};
  std::vector<std::string> candidates = Candidates(words);
  const QString beginning = QString::fromStdString(words.back());
  std::erase_if(candidates, [&](const std::string& candidate) {
    return !QString::fromStdString(candidate).startsWith(beginning, Qt::CaseInsensitive);
  });
  return candidates;
}

}  // namespace kalde2
