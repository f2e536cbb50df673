// read, write, compare and resolutions.

#include <QFile>
#include <QJsonArray>
#include <map>
#include <set>
#include <sstream>
#include <utility>

#include "ctl/commands.h"
#include "ctl/parameter_words.h"
#include "ctl/report.h"
#include "ctl/saved_file.h"
#include "files/clone.h"
#include "files/mod_FileHandler.h"
#include "files/mod_resolutions.h"
#include "files/snapshot.h"

namespace kalde2 {
namespace {

/// The path as the file system has it.
std::string FilePath(const std::string& path) {
  return QFile::encodeName(QString::fromStdString(path)).toStdString();
}

std::string TypeText(std::optional<std::int32_t> type) {
  if (!type) return "an unknown product";
  const Product* const product = FindProduct(*type);
  const bool has_model = product != nullptr && !product->model_code.empty();
  const std::string number = "type " + std::to_string(*type);
  return has_model ? std::string(product->model_code) + " (" + number + ')' : number;
}

QJsonValue TypeJson(std::optional<std::int32_t> type) {
  return type ? QJsonValue(*type) : QJsonValue();
}

/// Reads a settings file. One that holds nothing is none.
Snapshot ReadSnapshot(const std::string& path) {
  try {
    Snapshot snapshot = SnapshotOfFile(FilePath(path));
    if (snapshot.product_type || !snapshot.entries.empty()) return snapshot;
  } catch (const Fault& fault) {
    throw CommandFault(ExitStatus::kUsage, path + ": " + fault.what());
  }
  throw CommandFault(ExitStatus::kUsage, path + " is no settings file");
}

/// Reads all that the unit holds as the panel's Clone > Read does.
TransferReport CloneFrom(UnitAccess& unit, Exchanger& link, Progress& progress) {
  CloneTransfer clone(unit.Model(), link, progress);
  TransferReport report = clone.CloneRead();
  unit.Check();
  return report;
}

/// Says which inputs and values a clone does without.
void NoteSkipped(CommandContext& context, const TransferReport& report) {
  std::set<std::int16_t> untold;
  for (const TransferReport::Skipped& input : context.unit.Inputs().skipped) {
    untold.insert(input.source);
  }
  std::string numbers;
  for (const std::int16_t source : untold) {
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(source);
  }
  if (!numbers.empty()) {
    context.console.Note(
        "inputs that do not tell of themselves count as fitted, as in the panel: " + numbers);
  }
  const ParameterWords words(context.unit.Model());
  for (const TransferReport::Skipped& skipped : report.skipped) {
    const Place place = PlaceOf(context.unit.Model(), words, skipped.address, skipped.source);
    context.console.Note("the unit refuses " + place.Text());
  }
}

}  // namespace

// -------------------------------------------------------------------------------------------- read

ExitStatus RunRead(CommandContext& context) {
  UnitAccess& unit = context.unit;
  const std::string& path = context.arguments.front();
  unit.LoadInputsAsPanel(context.console);
  const TransferReport report = CloneFrom(unit, unit, context.console);
  std::ostringstream text;
  WriteSettings(text, unit.Model(), unit.UnitProduct().type);
  SaveWhole(path, text.str());
  NoteSkipped(context, report);
  if (context.json) {
    const ParameterWords words(unit.Model());
    QJsonArray refused;
    for (const TransferReport::Skipped& skipped : report.skipped) {
      refused.append(PlaceOf(unit.Model(), words, skipped.address, skipped.source).Json());
    }
    context.console.Result(QJsonObject{{"file", QString::fromStdString(path)},
                                       {"type", unit.UnitProduct().type},
                                       {"values", report.answered},
                                       {"refused", refused}});
  }
  return report.skipped.empty() ? ExitStatus::kDone : ExitStatus::kRefused;
}

// ------------------------------------------------------------------------------------------- write

namespace {

/// Address and source code of a value.
using Key = std::pair<Address, std::int16_t>;
using HeldByUnit = std::map<Key, std::int32_t>;

/// Stands before the unit and remembers what it answers.
class Remembering final : public Exchanger {
 public:
  explicit Remembering(Exchanger& unit) : unit_(unit) {}

  [[nodiscard]] Answer Exchange(const ParameterRequest& request) override {
    const Answer answer = unit_.Exchange(request);
    if (answer.outcome == Outcome::kAnswered && answer.record.Valid) {
      held_[{request.address, request.source}] = answer.record.Value;
    }
    return answer;
  }

  [[nodiscard]] const HeldByUnit& Held() const { return held_; }

 private:
  Exchanger& unit_;
  HeldByUnit held_;
};

/// Stands before the unit and lets through what it does not hold yet, or nothing on trial. What
/// does not get through is answered as the unit would: the transfer goes the same way.
class Sieve final : public Exchanger {
 public:
  Sieve(Exchanger& unit, ReplySink& model, HeldByUnit held, bool is_trial)
      : unit_(unit), model_(model), held_(std::move(held)), is_trial_(is_trial) {}

  [[nodiscard]] Answer Exchange(const ParameterRequest& request) override {
    const auto held = held_.find({request.address, request.source});
    const bool is_held = held != held_.end() && held->second == request.value;
    if (!is_held) sent_.push_back(request);
    if (!is_held && !is_trial_) return unit_.Exchange(request);
    ReplyRecord record{.Group = request.group,
                       .Index = request.index,
                       .Address = request.address,
                       .Value = request.value,
                       .Source = request.source,
                       .Valid = {}};
    model_.ApplyReply(record);
    return {Outcome::kAnswered, record};
  }

  /// What got through, or would have, in its order.
  [[nodiscard]] const std::vector<ParameterRequest>& Sent() const { return sent_; }

 private:
  Exchanger& unit_;
  ReplySink& model_;
  HeldByUnit held_;
  bool is_trial_;
  std::vector<ParameterRequest> sent_;
};

void CheckType(CommandContext& context, const std::string& path, const Snapshot& file) {
  const std::int32_t type = context.unit.UnitProduct().type;
  if (!file.product_type || *file.product_type == type || context.IsSet("any-type")) return;
  throw CommandFault(ExitStatus::kUsage, path + " is of " + TypeText(file.product_type) +
                                             ", the unit is a " + TypeText(type) +
                                             "; --any-type writes it all the same");
}

/// A value that the unit does not hold although it was sent.
struct NotTaken {
  Place place;
  std::int32_t sent = 0;
  std::optional<std::int32_t> held;
};

/// Reads back what was sent; of what was sent twice the last counts.
std::vector<NotTaken> ReadBack(CommandContext& context, const ParameterWords& words,
                               const std::vector<ParameterRequest>& sent) {
  std::map<Key, std::int32_t> wanted;
  for (const ParameterRequest& request : sent) {
    wanted[{request.address, request.source}] = request.value;
  }
  context.console.SetCaption("Reading back");
  context.console.SetRange(0, static_cast<int>(wanted.size()));
  int done = 0;
  std::vector<NotTaken> not_taken;
  for (const auto& [key, value] : wanted) {
    context.console.SetValue(++done);
    const std::optional<std::int32_t> held = context.unit.Read(key.first, key.second);
    if (held == value) continue;
    not_taken.push_back({PlaceOf(context.unit.Model(), words, key.first, key.second), value, held});
  }
  context.console.End(true);
  return not_taken;
}

QJsonArray SentJson(const CommandContext& context, const ParameterWords& words,
                    const std::vector<ParameterRequest>& sent) {
  QJsonArray rows;
  for (const ParameterRequest& request : sent) {
    const Place place = PlaceOf(context.unit.Model(), words, request.address, request.source);
    rows.append(Together(place.Json(), ValueJson(place.parameter, request.value)));
  }
  return rows;
}

QJsonArray NotTakenJson(const std::vector<NotTaken>& not_taken) {
  QJsonArray rows;
  for (const NotTaken& value : not_taken) {
    QJsonObject row = value.place.Json();
    row.insert("sent", ValueJson(value.place.parameter, value.sent));
    row.insert("held", ValueJson(value.place.parameter, value.held));
    rows.append(row);
  }
  return rows;
}

void PrintWritten(CommandContext& context, const ParameterWords& words,
                  const std::vector<ParameterRequest>& sent,
                  const std::vector<NotTaken>& not_taken) {
  if (context.IsSet("dry-run")) {
    for (const ParameterRequest& request : sent) {
      const Place place = PlaceOf(context.unit.Model(), words, request.address, request.source);
      context.console.Result(place.Text() + ": " + place.parameter.Shown(request.value));
    }
  }
  for (const auto& [place, value, held] : not_taken) {
    const Parameter& parameter = place.parameter;
    context.console.Result(place.Text() + ": " + parameter.Shown(value) + " was sent, the unit " +
                           (held ? "holds " + parameter.Shown(*held) : "refuses it"));
  }
}

/// Takes the values of a file for those of the unit, as the panel's Load does.
void Load(UnitModel& model, const Snapshot& file) {
  for (const auto& [address, source, value] : file.entries) {
    ReplyRecord record;
    record.Address = address;
    record.Source = source;
    record.Value = value;
    model.ApplyReply(record);
  }
}

/// Sends what is held through the sieve.
void Send(CommandContext& context, Sieve& sieve) {
  CloneTransfer clone(context.unit.Model(), sieve, context.console);
  if (!clone.CloneWrite().is_complete) {
    context.console.Note(std::to_string(sieve.Sent().size()) + " values were sent before the end");
  }
  context.unit.Check();
}

}  // namespace

ExitStatus RunWrite(CommandContext& context) {
  UnitAccess& unit = context.unit;
  const std::string& path = context.arguments.front();
  const Snapshot file = ReadSnapshot(path);
  unit.Open();
  CheckType(context, path, file);
  unit.LoadInputsAsPanel(context.console);
  Remembering remembering(unit);
  if (context.IsSet("changed")) (void)CloneFrom(unit, remembering, context.console);
  const bool is_trial = context.IsSet("dry-run");
  Sieve sieve(unit, unit.Model(), remembering.Held(), is_trial);
  Load(unit.Model(), file);
  Send(context, sieve);
  const ParameterWords words(unit.Model());
  std::vector<NotTaken> not_taken;
  if (!is_trial) not_taken = ReadBack(context, words, sieve.Sent());
  if (context.json) {
    context.console.Result(QJsonObject{{"file", QString::fromStdString(path)},
                                       {"dry_run", is_trial},
                                       {"sent", SentJson(context, words, sieve.Sent())},
                                       {"not_taken", NotTakenJson(not_taken)}});
  } else {
    PrintWritten(context, words, sieve.Sent(), not_taken);
  }
  return not_taken.empty() ? ExitStatus::kDone : ExitStatus::kDifferent;
}

// ----------------------------------------------------------------------------------------- compare

namespace {

/// One of the two that are compared.
struct Side {
  std::string title;  ///< the file's name, or "the unit"
  QJsonValue file;    ///< null for the unit
  Snapshot snapshot;

  [[nodiscard]] QJsonObject Json() const {
    return {{"file", file}, {"type", TypeJson(snapshot.product_type)}};
  }
};

Side SideOfFile(const std::string& path) {
  return {path, QString::fromStdString(path), ReadSnapshot(path)};
}

/// What the unit holds. Values that it refuses are missing.
Side SideOfUnit(CommandContext& context) {
  UnitAccess& unit = context.unit;
  unit.Open();
  unit.LoadInputsAsPanel(context.console);
  const TransferReport report = CloneFrom(unit, unit, context.console);
  Snapshot snapshot = TakeSnapshot(unit.Model(), unit.UnitProduct().type);
  for (const TransferReport::Skipped& skipped : report.skipped) {
    const bool has_source = unit.Model().catalogue.IsPerSource(IndexOf(skipped.address));
    std::erase_if(snapshot.entries, [&](const Snapshot::Entry& entry) {
      return entry.address == skipped.address && (!has_source || entry.source == skipped.source);
    });
  }
  NoteSkipped(context, report);
  return {"the unit", QJsonValue(), std::move(snapshot)};
}

/// Fills a model with what is known of a product without its unit.
void LoadOffline(UnitModel& model, std::int32_t type) {
  AddProductEntries(model.catalogue, type);
  LoadInputNames(model.input_names);
  LoadValueNames(model.value_names, type, model.input_names, model.connectivity);
}

std::string SideText(const Side& side, const Parameter& parameter,
                     std::optional<std::int32_t> value) {
  return (value ? parameter.Shown(*value) : "missing") + " in " + side.title;
}

}  // namespace

ExitStatus RunCompare(CommandContext& context) {
  const Side left = SideOfFile(context.arguments.front());
  const bool is_with_unit = context.arguments.size() == 1;
  const Side right = is_with_unit ? SideOfUnit(context) : SideOfFile(context.arguments.back());
  NullDisplay display;
  UnitModel offline(display, display);
  if (!is_with_unit) {
    LoadOffline(offline,
                left.snapshot.product_type.value_or(right.snapshot.product_type.value_or(0)));
  }
  UnitModel& model = is_with_unit ? context.unit.Model() : offline;
  const ParameterWords words(model);
  const bool same_type = left.snapshot.product_type == right.snapshot.product_type;
  if (!same_type && !context.json) {
    context.console.Result("Product type: " + TypeText(left.snapshot.product_type) + " in " +
                           left.title + ", " + TypeText(right.snapshot.product_type) + " in " +
                           right.title);
  }
  const std::vector<Difference> differences = Compare(left.snapshot, right.snapshot);
  QJsonArray rows;
  for (const Difference& difference : differences) {
    const Place place = PlaceOf(model, words, difference.address, difference.source);
    const Parameter& parameter = place.parameter;
    if (!context.json) {
      context.console.Result(place.Text() + ": " + SideText(left, parameter, difference.left) +
                             ", " + SideText(right, parameter, difference.right));
    }
    QJsonObject row = place.Json();
    row.insert("left", ValueJson(parameter, difference.left));
    row.insert("right", ValueJson(parameter, difference.right));
    rows.append(row);
  }
  if (context.json) {
    context.console.Result(
        QJsonObject{{"left", left.Json()}, {"right", right.Json()}, {"differences", rows}});
  }
  return same_type && differences.empty() ? ExitStatus::kDone : ExitStatus::kDifferent;
}

// ------------------------------------------------------------------------------------- resolutions

namespace {

/// Counts the slots of a fetch on the console.
class CountedFetch final : public FetchEvents {
 public:
  explicit CountedFetch(Progress& progress) : progress_(progress) {}

  void SlotBegins(std::size_t slot, std::size_t slot_count) override {
    progress_.SetRange(0, static_cast<int>(slot_count));
    progress_.SetValue(static_cast<int>(slot));
  }
  void SlotUnread(std::size_t /*slot*/) override {}
  void Fetched() override {}

 private:
  Progress& progress_;
};

QJsonObject ResolutionJson(std::size_t slot, const ResolutionRecord& record) {
  return {{"slot", static_cast<int>(slot)},
          {"name", QString::fromLatin1(record.Name.c_str())},
          {"flags", QString::fromLatin1(record.Flags.c_str())},
          {"width", record.HWidth},
          {"height", record.VHeight},
          {"horizontal_frequency", record.HFreq},
          {"total_width", record.HTotal},
          {"total_height", record.VTotal},
          {"horizontal_sync", record.HSync},
          {"vertical_sync", record.VSync},
          {"horizontal_position", record.HPos},
          {"vertical_position", record.VPos},
          {"polarities", TextJson(record.Misc)}};
}

std::string ResolutionLine(std::size_t slot, const ResolutionRecord& record) {
  return QString("%1  %2 %3 %4 x %5  total %6 x %7  %8")
      .arg(slot, 3)
      .arg(QString::fromLatin1(record.Name.c_str()), -24)
      .arg(QString::fromLatin1(record.Flags.c_str()), -5)
      .arg(record.HWidth, 5)
      .arg(record.VHeight, -5)
      .arg(record.HTotal, 5)
      .arg(record.VTotal, -5)
      .arg(QString::fromLatin1(record.Misc.c_str()))
      .trimmed()
      .toStdString();
}

}  // namespace

ExitStatus RunResolutions(CommandContext& context) {
  const bool has_file = !context.arguments.empty();
  ResolutionTable table;
  CountedFetch events(context.console);
  const FetchEnding ending =
      ResolutionData(table, context.unit.Link(), context.console).FetchResolutionData(events);
  context.unit.Check();
  if (ending != FetchEnding::kComplete) {
    throw CommandFault(ExitStatus::kRefused, "the unit does not tell how many resolutions it has");
  }
  if (has_file) {
    std::ostringstream text;
    WriteResolutions(text, table);
    SaveWhole(context.arguments.front(), text.str());
  }
  QJsonArray rows;
  // The unit's slot k stands in entry k + 1.
  for (std::size_t entry = 1; entry < table.Size(); ++entry) {
    const ResolutionRecord& record = table.Record(entry);
    rows.append(ResolutionJson(entry - 1, record));
    if (!context.json && !has_file) context.console.Result(ResolutionLine(entry - 1, record));
  }
  if (context.json) {
    context.console.Result(QJsonObject{
        {"file",
         has_file ? QJsonValue(QString::fromStdString(context.arguments.front())) : QJsonValue()},
        {"resolutions", rows}});
  }
  return ExitStatus::kDone;
}

}  // namespace kalde2
