// ports and info, and what the unit does at a press: autoset, fade, store and reset.

#include <QJsonArray>
#include <QSerialPortInfo>
#include <algorithm>

#include "adapters/port_numbers.h"
#include "adapters/serial_line.h"
#include "ctl/commands.h"
#include "ctl/parameter_words.h"
#include "ctl/report.h"
#include "model/autoset.h"
#include "model/unit_actions.h"

namespace kalde2 {
namespace {

QString DescriptionOf(const QString& device, const QList<QSerialPortInfo>& known) {
  const auto found = std::ranges::find_if(
      known, [&](const QSerialPortInfo& port) { return port.systemLocation() == device; });
  return found == known.end() ? QString() : found->description();
}

}  // namespace

ExitStatus RunPorts(CommandContext& context) {
  const QList<QSerialPortInfo> known = QSerialPortInfo::availablePorts();
  const NumberedPorts ports = PortsPresent();
  QJsonArray rows;
  for (auto port = ports.cbegin(); port != ports.cend(); ++port) {
    const QString& device = port.value();
    const QString description = DescriptionOf(device, known);
    const bool in_use = IsLocked(device);
    rows.append(QJsonObject{{"number", port.key()},
                            {"device", device},
                            {"in_use", in_use},
                            {"description", TextJson(description.toStdString())}});
    if (context.json) continue;
    const QString line = QString("%1  %2  %3  %4")
                             .arg(port.key(), 3)
                             .arg(device, -14)
                             .arg(QLatin1String(in_use ? "in use" : "free"), -6)
                             .arg(description);
    context.console.Result(QString(line).trimmed().toStdString());
  }
  if (context.json) context.console.Result(QJsonObject{{"ports", rows}});
  if (ports.isEmpty()) context.console.Note("this computer has no serial port");
  return ExitStatus::kDone;
}

// -------------------------------------------------------------------------------------------- info

namespace {

struct InputState {
  int source;
  std::string name;   ///< empty where it is not known
  const char* state;  ///< "fitted", or why it is not known
};

/// The inputs by source number: the fitted ones and those that do not tell.
std::vector<InputState> InputStates(UnitAccess& unit) {
  std::vector<InputState> states;
  for (const ValueItem& input : FittedInputs(unit.Model())) {
    states.push_back({input.data, input.label, "fitted"});
  }
  for (const TransferReport::Skipped& skipped : unit.Inputs().skipped) {
    // Both of an input's questions may be skipped.
    if (std::ranges::count(states, skipped.source, &InputState::source) > 0) continue;
    const bool is_refused = skipped.outcome == Outcome::kRefused;
    states.push_back({skipped.source, {}, is_refused ? "refused" : "silent"});
  }
  std::ranges::sort(states, {}, &InputState::source);
  return states;
}

struct Offer {
  const char* name;
  bool is_offered;
};

/// What the panel has controls for with this product.
std::vector<Offer> Offers(const Product& product) {
  return {{"keyer", product.feature_controls},
          {"lock", product.feature_controls},
          {"fade", product.feature_controls},
          {"overscan", product.feature_controls && !product.no_overscan},
          {"autoset", product.autoset}};
}

}  // namespace

ExitStatus RunInfo(CommandContext& context) {
  UnitAccess& unit = context.unit;
  unit.LoadInputs(context.console);
  const Product& product = unit.UnitProduct();
  const std::string device =
      ChosenPort(context.choice).DeviceFor(QString::fromStdString(context.choice.port).toInt());
  const auto parameters = static_cast<int>(unit.Model().catalogue.ActiveParams().size());
  const std::string model(product.model_code);
  QJsonObject offers;
  std::string offered;
  for (const Offer& offer : Offers(product)) {
    offers.insert(QLatin1String(offer.name), offer.is_offered);
    if (offer.is_offered) offered += (offered.empty() ? "" : ", ") + std::string(offer.name);
  }
  QJsonArray inputs;
  std::vector<std::string> lines;
  for (const auto& [source, name, state] : InputStates(unit)) {
    inputs.append(
        QJsonObject{{"source", source}, {"name", TextJson(name)}, {"state", QLatin1String(state)}});
    lines.push_back("Input:       " + std::to_string(source) + "  " +
                    (name.empty() ? state : name));
  }
  if (context.json) {
    context.console.Result(
        QJsonObject{{"device", TextJson(device)},
                    {"baud", QString::fromStdString(context.choice.baud).toInt()},
                    {"type", product.type},
                    {"model", TextJson(model)},
                    {"parameters", parameters},
                    {"offers", offers},
                    {"inputs", inputs}});
    return ExitStatus::kDone;
  }
  context.console.Result("Device:      " + device + " at " + context.choice.baud + " baud");
  context.console.Result("Type:        " + std::to_string(product.type));
  context.console.Result("Model:       " + model);
  context.console.Result("Parameters:  " + std::to_string(parameters));
  context.console.Result("Offers:      " + (offered.empty() ? "nothing beyond them" : offered));
  for (const std::string& line : lines) context.console.Result(line);
  return ExitStatus::kDone;
}

// ---------------------------------------------------------------------------- actions of the unit

namespace {

/// A clock whose sleep a signal ends.
class WakefulClock final : public Clock {
 public:
  WakefulClock(Clock& clock, const UnitAccess& unit) : clock_(clock), unit_(unit) {}

  [[nodiscard]] std::chrono::system_clock::time_point Now() const override { return clock_.Now(); }
  [[nodiscard]] std::chrono::milliseconds Monotonic() const override { return clock_.Monotonic(); }
  void ServeEvents(std::chrono::milliseconds at_most) override { clock_.ServeEvents(at_most); }
  void Sleep(std::chrono::milliseconds duration) override {
    const std::chrono::milliseconds end = Monotonic() + duration;
    while (unit_.IsOpen() && Monotonic() < end) clock_.ServeEvents(end - Monotonic());
  }

 private:
  Clock& clock_;
  const UnitAccess& unit_;
};

/// Stands before a unit and ends the work where the unit refuses to begin it.
class EndOnRefusal final : public Exchanger {
 public:
  explicit EndOnRefusal(UnitAccess& unit) : unit_(unit) {}

  [[nodiscard]] Answer Exchange(const ParameterRequest& request) override {
    const Answer answer = unit_.Exchange(request);
    if (!request.is_read && answer.outcome == Outcome::kRefused) {
      unit_.End(ExitStatus::kRefused, "the unit refuses autoset");
    }
    return answer;
  }

 private:
  UnitAccess& unit_;
};

[[noreturn]] void RefuseToOffer(const UnitAccess& unit, const char* what) {
  throw CommandFault(ExitStatus::kNoUnit,
                     "a " + std::string(unit.UnitProduct().model_code) + " has no " + what);
}

ExitStatus Perform(CommandContext& context, const UnitAction& action) {
  const bool is_done = context.unit.Write(action);
  if (!is_done) context.console.Note("the unit refuses it");
  if (context.json) context.console.Result(QJsonObject{{"done", is_done}});
  return is_done ? ExitStatus::kDone : ExitStatus::kRefused;
}

}  // namespace

ExitStatus RunAutoset(CommandContext& context) {
  UnitAccess& unit = context.unit;
  if (!unit.UnitProduct().autoset) RefuseToOffer(unit, "autoset");
  WakefulClock clock(context.clock, unit);
  EndOnRefusal link(unit);
  (void)Autoset(link, clock, context.console).Run();
  unit.Check();
  const bool is_finished = unit.Read(address::kAutoset) == 0;
  if (!is_finished) context.console.Note("the unit has not finished yet");
  const ParameterWords words(unit.Model());
  QJsonArray rows;
  for (const Address address : kAutosetAdjustments) {
    const Place place = PlaceOf(unit.Model(), words, address, kFirstSourceCode);
    const std::optional<std::int32_t> value = unit.Read(address, kFirstSourceCode);
    rows.append(Together(place.Json(), ValueJson(place.parameter, value)));
    if (context.json) continue;
    context.console.Result(place.Text() + ": " + (value ? std::to_string(*value) : "refused"));
  }
  if (context.json) {
    context.console.Result(QJsonObject{{"finished", is_finished}, {"parameters", rows}});
  }
  return is_finished ? ExitStatus::kDone : ExitStatus::kDifferent;
}

ExitStatus RunFade(CommandContext& context) {
  const std::string& direction = context.arguments.front();
  if (direction != "in" && direction != "out") {
    throw CommandFault(ExitStatus::kUsage, "fade takes in or out, not \"" + direction + '"');
  }
  UnitAccess& unit = context.unit;
  unit.Open();
  const bool has_parameter = unit.Model().catalogue.Record(IndexOf(address::kFade)).Active;
  if (!unit.UnitProduct().feature_controls && !has_parameter) RefuseToOffer(unit, "fade");
  return Perform(context, direction == "in" ? kFadeIn : kFadeOut);
}

ExitStatus RunStore(CommandContext& context) {
  return Perform(context, kStore);
}

ExitStatus RunReset(CommandContext& context) {
  if (!context.IsSet("yes")) {
    throw CommandFault(ExitStatus::kUsage,
                       "reset clears the unit's non-volatile memory; with --yes it does");
  }
  context.unit.Open();
  return Perform(context, kReset);
}

}  // namespace kalde2
