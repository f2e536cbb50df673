// list, get and set.

#include <QJsonArray>
#include <algorithm>

#include "ctl/commands.h"
#include "ctl/parameter_words.h"
#include "ctl/report.h"
#include "link/numbers.h"
#include "model/value_names.h"

namespace kalde2 {
namespace {

/// Whether what the parameters are and take depends on the inputs that the unit has.
bool DependsOnInputs(const UnitAccess& unit, const ParamRecord& record) {
  return record.HasList && IsOfFittedInputs(record.ListId, unit.UnitProduct().type);
}

bool IsPerSource(const ParameterWords& words, const std::vector<CatalogueIndex>& indexes) {
  return std::ranges::any_of(
      indexes, [&](CatalogueIndex index) { return words.List().Record(index).PerSource; });
}

/// Reads the inputs where the parameters' choices are inputs.
void LoadInputsFor(CommandContext& context, const ParameterWords& words,
                   const std::vector<CatalogueIndex>& indexes) {
  const bool depends = std::ranges::any_of(indexes, [&](CatalogueIndex index) {
    return DependsOnInputs(context.unit, words.List().Record(index));
  });
  if (depends) context.unit.LoadInputs(context.console);
}

/// Reads a parameter that others depend on, where the product has it.
void ReadIfActive(UnitAccess& unit, const ParameterWords& words, Address address) {
  if (words.List().Record(IndexOf(address)).Active) (void)unit.Read(address);
}

std::int16_t NamedSource(CommandContext& context, const std::string& word) {
  if (const std::optional<std::int32_t> number = ReadWholeNumber(word)) {
    if (*number >= 0 && *number < kSources) return static_cast<std::int16_t>(*number);
    throw CommandFault(ExitStatus::kUsage, "a source code is 0 to 255, not " + word);
  }
  context.unit.LoadInputs(context.console);
  const std::vector<ValueItem> inputs = FittedInputs(context.unit.Model());
  std::vector<std::string> names;
  names.reserve(inputs.size());
  for (const ValueItem& input : inputs) names.push_back(input.label);
  return static_cast<std::int16_t>(inputs[FindName("input", word, names)].data);
}

/// Selects the source that per-source parameters are asked for: the one that is named, or that the
/// unit is set up for.
void SelectSource(CommandContext& context, const ParameterWords& words) {
  UnitAccess& unit = context.unit;
  if (!context.IsSet("source")) {
    ReadIfActive(unit, words, address::kSetupSource);
  } else {
    const std::int16_t source = NamedSource(context, context.Value("source"));
    unit.Model().values.SetParamValue(ValueStore::kCurrentSource, source);
  }
}

std::vector<Place> PlacesOf(CommandContext& context, const ParameterWords& words,
                            const std::vector<CatalogueIndex>& indexes) {
  LoadInputsFor(context, words, indexes);
  if (context.IsSet("source") || IsPerSource(words, indexes)) SelectSource(context, words);
  std::vector<Place> places;
  places.reserve(indexes.size());
  for (const CatalogueIndex index : indexes) {
    places.push_back(
        PlaceOf(context.unit.Model(), words, AddressOf(index), words.List().WriteSource(index)));
  }
  return places;
}

std::optional<std::int32_t> ReadAt(UnitAccess& unit, const Place& place) {
  return unit.Read(place.parameter.Address(), place.source);
}

void NoteRefusal(CommandContext& context, const Place& place) {
  context.console.Note("the unit refuses " + place.Text());
}

// -------------------------------------------------------------------------------------------- list

QJsonObject TakesJson(const Parameter& parameter) {
  QJsonArray choices;
  for (const ValueItem& choice : parameter.choices) {
    choices.append(ValueJson(parameter, choice.data));
  }
  const auto limit = [&](std::int32_t number) {
    return parameter.is_number ? QJsonValue(number) : QJsonValue();
  };
  return {{"minimum", limit(parameter.minimum)},
          {"maximum", limit(parameter.maximum)},
          {"choices", choices}};
}

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string ListLine(const Place& place, const std::string& value) {
  constexpr std::size_t kNameWidth = 24;
  constexpr std::size_t kValueWidth = 18;
  return std::to_string(place.parameter.Address()) + "  " + Padded(place.Text(), kNameWidth) + ' ' +
         Padded(value, kValueWidth) + ' ' + place.parameter.Takes();
}

/// The parameters with a word in their names.
std::vector<CatalogueIndex> Named(const ParameterWords& words, const std::string& word) {
  const QString wanted = QString::fromStdString(word);
  std::vector<CatalogueIndex> named;
  for (const CatalogueIndex index : words.All()) {
    const QString name = QString::fromStdString(words.List().Record(index).Name);
    if (name.contains(wanted, Qt::CaseInsensitive)) named.push_back(index);
  }
  if (named.empty() && !word.empty()) {
    throw CommandFault(ExitStatus::kUsage, "no parameter has \"" + word +
                                               "\" in its name; \"kalde2ctl list --all\" names "
                                               "them all");
  }
  return named;
}

}  // namespace

ExitStatus RunList(CommandContext& context) {
  UnitAccess& unit = context.unit;
  const ParameterWords words(unit.Model());
  const std::vector<CatalogueIndex> named =
      Named(words, context.arguments.empty() ? "" : context.arguments.front());
  if (IsPerSource(words, named)) unit.LoadInputs(context.console);
  ReadIfActive(unit, words, address::kAspectAdjust);
  ReadIfActive(unit, words, address::kShrinkEnable);
  // What applies is settled first: reading the source that is set up selects it.
  const std::vector<Place> places = PlacesOf(context, words, named);
  std::vector<bool> applies;
  applies.reserve(named.size());
  for (const CatalogueIndex index : named) {
    applies.push_back(words.List().IsCommandAvailable(index) &&
                      words.List().IsCommandApplicable(index));
  }
  QJsonArray document;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!applies[i] && !context.IsSet("all")) continue;
    const Parameter& parameter = places[i].parameter;
    const std::optional<std::int32_t> value = ReadAt(unit, places[i]);
    if (context.json) {
      QJsonObject row = Together(places[i].Json(), ValueJson(parameter, value));
      row.insert("applies", bool{applies[i]});
      document.append(Together(row, TakesJson(parameter)));
    } else {
      context.console.Result(ListLine(places[i], value ? parameter.Shown(*value) : "(refused)"));
    }
  }
  if (context.json) context.console.Result(QJsonObject{{"parameters", document}});
  return ExitStatus::kDone;
}

// --------------------------------------------------------------------------------------------- get

ExitStatus RunGet(CommandContext& context) {
  const ParameterWords words(context.unit.Model());
  std::vector<CatalogueIndex> indexes;
  for (const std::string& word : context.arguments) indexes.push_back(words.Find(word));
  ExitStatus status = ExitStatus::kDone;
  QJsonArray document;
  for (const Place& place : PlacesOf(context, words, indexes)) {
    const std::optional<std::int32_t> value = ReadAt(context.unit, place);
    if (!value) {
      NoteRefusal(context, place);
      status = ExitStatus::kRefused;
    }
    document.append(Together(place.Json(), ValueJson(place.parameter, value)));
    // A line for each, so that a script finds every value in its place.
    if (!context.json) context.console.Result(value ? place.parameter.Shown(*value) : "");
  }
  if (context.json) context.console.Result(QJsonObject{{"parameters", document}});
  return status;
}

// --------------------------------------------------------------------------------------------- set

namespace {

/// A value that is to be sent.
struct Change {
  Place place;
  std::int32_t value = 0;
};

/// All that is asked for, checked; nothing of it is sent yet.
std::vector<Change> Changes(CommandContext& context, const ParameterWords& words) {
  std::vector<Assignment> assignments;
  std::vector<CatalogueIndex> indexes;
  for (const std::string& word : context.arguments) {
    assignments.push_back(SplitAssignment(word));
    indexes.push_back(words.Find(assignments.back().parameter));
  }
  std::vector<Change> changes;
  std::vector<WantedValue> wanted;
  for (Place& place : PlacesOf(context, words, indexes)) {
    wanted.push_back(ReadValue(place.parameter, assignments[changes.size()]));
    changes.push_back({std::move(place), wanted.back().number});
  }
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!wanted[i].is_step) continue;
    const std::optional<std::int32_t> present = ReadAt(context.unit, changes[i].place);
    if (!present) {
      throw CommandFault(ExitStatus::kRefused, "the unit refuses to tell " +
                                                   changes[i].place.Text() + "; nothing was sent");
    }
    changes[i].value = Stepped(changes[i].place.parameter, *present, wanted[i].number);
  }
  return changes;
}

}  // namespace

ExitStatus RunSet(CommandContext& context) {
  const ParameterWords words(context.unit.Model());
  ExitStatus status = ExitStatus::kDone;
  QJsonArray document;
  for (const auto& [place, value] : Changes(context, words)) {
    const Parameter& parameter = place.parameter;
    const bool is_taken = context.unit.Write({parameter.Address(), value}, place.source);
    const std::optional<std::int32_t> held = ReadAt(context.unit, place);
    if (!is_taken) {
      NoteRefusal(context, place);
      status = ExitStatus::kRefused;
    } else if (held != value) {
      context.console.Note(place.Text() + " was sent as " + parameter.Shown(value) +
                           ", the unit holds " +
                           (held ? parameter.Shown(*held) : "what it refuses"));
      if (status == ExitStatus::kDone) status = ExitStatus::kDifferent;
    }
    QJsonObject row = Together(place.Json(), ValueJson(parameter, held));
    row.insert("sent", value);
    document.append(row);
    if (!context.json) context.console.Result(held ? parameter.Shown(*held) : "");
  }
  if (context.json) context.console.Result(QJsonObject{{"parameters", document}});
  return status;
}

}  // namespace kalde2
