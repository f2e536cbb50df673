#include "session/session.h"

#include "link/fault.h"
#include "link/numbers.h"
#include "model/connectivity.h"

namespace kalde2 {

Session::Session(SerialPort& port, Clock& clock, ReplyDisplay& display, RefreshTimer& refresh,
                 OperatorQueue& queue, SessionEvents& events, Deadlines deadlines)
    : port_(port),
      queue_(queue),
      events_(events),
      status_(events),
      unit_(display, refresh),
      link_(port, clock, unit_, deadlines) {
  LoadInputNames(unit_.input_names);
  link_.SetObserver(&status_);
  port_.SetListener(this);
}

Session::~Session() {
  port_.SetListener(nullptr);
}

OpenResult Session::Open(std::string_view baud, std::string_view port) {
  using Ending = OpenResult::Ending;
  // What is still in the ring is of the unit before, and would be shown as this one's.
  link_.ForgetUnasked();
  // From here to the next connectivity that is read, replies are left to the caller. A failed
  // detection leaves it so, which is intended.
  link_.SetDetectionInProgress(true);
  if (const auto error = OpenPort(baud, port)) return {Ending::kPortFailed, *error};
  is_open_ = true;
  events_.PortOpened();
  status_.PortOpened();
  const Answer answer = link_.Exchange({.is_read = true, .address = address::kProductType});
  if (answer.outcome == Outcome::kClosed) return {Ending::kClosedMeanwhile, {}};
  const bool answered = answer.record.Valid;
  const bool is_certain = answer.is_alone && answer.record.Address == address::kProductType;
  const Product* const product = answered ? FindSupportedProduct(answer.record.Value) : nullptr;
  if (product == nullptr) {
    Shut();
    return {answered ? Ending::kNotSupported : Ending::kNoAnswer, {}, is_certain};
  }
  unit_connected_ = true;
  product_type_ = product->type;
  events_.UnitFound(*product);
  status_.UnitFound();
  return {Ending::kOpened, {}, is_certain};
}

/// @return nothing on success, else what went wrong
std::optional<std::string> Session::OpenPort(std::string_view baud, std::string_view port) {
  try {
    return port_.Open({.settings = std::to_string(RoundToInt32(NumericValue(baud))) + ",N,8,1",
                       .handshaking = Handshaking::kRtsXonXoff,
                       .dtr_enable = true,
                       .comm_port = RoundToInt16(NumericValue(port))});
  } catch (const Fault&) {
    return "There is no serial port " + std::string(port) + " on this computer";
  }
}

TransferReport Session::LoadTables(Progress& progress) {
  TransferReport report;
  RunStep([&] {
    ConnectivityReader reader(unit_.connectivity, link_, progress);
    report = LoadProductCatalogue(unit_.catalogue, reader, product_type_);
  });
  RunStep([this] { LoadNames(); });
  return report;
}

void Session::LoadCatalogue() {
  AddProductEntries(unit_.catalogue, product_type_);
  LoadNames();
  // Without a connectivity that is read, nothing else ends the detection.
  link_.SetDetectionInProgress(false);
}

void Session::LoadNames() {
  LoadValueNames(unit_.value_names, product_type_, unit_.input_names, unit_.connectivity);
}

void Session::DropUntoldInputs(const TransferReport& connectivity) {
  for (const TransferReport::Skipped& untold : connectivity.skipped) {
    const auto source = static_cast<std::size_t>(untold.source);
    unit_.connectivity.SourceInfo.at(source) = {};
    unit_.connectivity.SourceFitted.at(source) = false;
  }
  // A list is never cleared by a later filling.
  unit_.value_names = {};
  RunStep([this] { LoadNames(); });
}

void Session::Close() {
  Shut();
  queue_.Abandon();
}

void Session::Shut() {
  port_.Close();
  status_.PortClosed();
  is_open_ = false;
  unit_connected_ = false;
}

void Session::MSComm1_OnComm() {
  if (link_.CollectUnasked()) events_.UnaskedArrived();
}

void Session::PortLost(const std::string& reason) {
  Close();
  events_.PortLost(reason);
}

}  // namespace kalde2
