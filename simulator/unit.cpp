#include "simulator/unit.h"

#include <algorithm>
#include <array>

#include "model/mod_Producttypes.h"
#include "simulator/unit_addresses.h"

namespace kalde2 {
namespace {

/// By how much autoset moves what it adjusts.
struct Adjustment {
  int address;
  std::int32_t step;
};

constexpr std::array kAutosetAdjustments =
    std::to_array<Adjustment>({{addresses::kLeftShift, 2},
                               {addresses::kTopShift, -1},
                               {addresses::kRightShift, -2},
                               {addresses::kBottomShift, 1},
                               {addresses::kInputPixelPhase, 3}});

}  // namespace

SimulatedUnit::SimulatedUnit(UnitOptions options, Journal journal)
    : options_(std::move(options)),
      journal_(std::move(journal)),
      catalogue_(CatalogueFor(options_.product_type)),
      words_(catalogue_, options_.product_type, options_.fitted_sources),
      bank_(catalogue_, options_.fitted_sources) {}

ParamCatalogue SimulatedUnit::CatalogueFor(std::int32_t product_type) {
  ParamCatalogue catalogue;
  AddProductEntries(catalogue, product_type);
  return catalogue;
}

// ---------------------------------------------------------------------------------------------
// Cutting requests out of the stream.

std::vector<LineAction> SimulatedUnit::Receive(std::string_view bytes) {
  partial_ += bytes;
  std::vector<LineAction> actions;
  while (const std::optional<std::string> request = TakeRequest()) Answer(*request, actions);
  return actions;
}

void SimulatedUnit::DropPartialRequest() {
  if (partial_.empty()) return;
  ReportProblem(partial_, "request without an end");
  partial_.clear();
}

std::size_t SimulatedUnit::RequestStart() const {
  for (std::size_t i = 0; i < partial_.size(); ++i) {
    const bool starts_packet = i + 1 == partial_.size() || partial_[i + 1] == kSlotQueryRest;
    if (partial_[i] == 'F' || (partial_[i] == 'S' && starts_packet)) return i;
  }
  return partial_.size();
}

void SimulatedUnit::DropNoise() {
  const std::size_t start = RequestStart();
  if (start == 0) return;
  // A computer with software flow control sends these two by itself.
  constexpr std::string_view kFlowControl = "\x11\x13";
  const std::string noise = partial_.substr(0, start);
  if (noise.find_first_not_of(kFlowControl) != std::string::npos) {
    ReportProblem(noise, "belongs to no request");
  }
  partial_.erase(0, start);
}

std::optional<std::string> SimulatedUnit::TakeRequest() {
  constexpr std::size_t kLongestFrame = 64;
  DropNoise();
  if (partial_.empty()) return std::nullopt;
  std::size_t length = 0;
  if (partial_.front() == 'S') {
    length = kSlotQueryLength;
  } else {
    length = partial_.find(kFrameEnd) + 1;
    if (length == 0 && partial_.size() > kLongestFrame) length = partial_.size();
  }
  if (length == 0 || partial_.size() < length) return std::nullopt;
  std::string request = partial_.substr(0, length);
  partial_.erase(0, length);
  return request;
}

// ---------------------------------------------------------------------------------------------
// Answering.

void SimulatedUnit::Answer(const std::string& bytes, std::vector<LineAction>& actions) {
  constexpr int kNoAddress = -1;
  ++requests_;
  int address = kNoAddress;
  std::string reply = bytes.front() == 'S' ? AnswerSlotQuery(bytes) : AnswerFrame(bytes, address);
  if (reply.empty()) return;
  for (LineAction& action : faults_.Deliver(std::move(reply), address)) {
    action.after += options_.latency;
    actions.push_back(std::move(action));
  }
}

std::string SimulatedUnit::AnswerFrame(const std::string& frame, int& address) {
  const Reading<UnitRequest> reading = ReadRequest(frame);
  if (!reading.request) {
    ReportProblem(frame, reading.problem);
    return std::string(kErrorReply);
  }
  const UnitRequest& request = *reading.request;
  address = request.address;
  if (!IsParameter(address)) {
    ReportProblem(frame, "there is no address " + std::to_string(address));
    return std::string(kErrorReply);
  }
  if (options_.recorded) return AnswerRecorded(frame, words_.OfRequest(request));
  Report(frame, words_.OfRequest(request));
  return request.is_read ? AnswerRead(request) : AnswerWrite(request);
}

std::string SimulatedUnit::AnswerRead(const UnitRequest& request) {
  const std::int32_t value = request.address == addresses::kAutoset
                                 ? ReadAutoset()
                                 : Value(request.address, request.source);
  return BuildReply(ReplyTo::kReadRequest, request.source, request.address,
                    value + WireOffset(request.address));
}

bool SimulatedUnit::IsFitted(int source) const {
  return std::ranges::find(options_.fitted_sources, source) != options_.fitted_sources.end();
}

std::string SimulatedUnit::AnswerWrite(const UnitRequest& request) {
  const SpecialAddress* special = FindSpecial(request.address);
  if (special != nullptr && special->is_read_only) return std::string(kErrorReply);
  if (special == nullptr) {
    bank_.Set(request.address, request.source, request.value - WireOffset(request.address));
  } else if (request.address == addresses::kAutoset) {
    autoset_reads_left_ = options_.autoset_reads;
    autoset_source_ = request.source;
    if (autoset_reads_left_ == 0) FinishAutoset();
  } else if (request.address == addresses::kReset) {
    bank_.Reset();
  }
  return BuildReply(ReplyTo::kWriteRequest, request.source, request.address, request.value);
}

std::int32_t SimulatedUnit::ReadAutoset() {
  if (autoset_reads_left_ == 0) return 0;
  if (--autoset_reads_left_ == 0) FinishAutoset();
  return 1;
}

void SimulatedUnit::FinishAutoset() {
  for (const Adjustment& adjustment : kAutosetAdjustments) {
    const ParamRecord& record = catalogue_.Record(IndexOf(adjustment.address));
    const std::int32_t value = bank_.Get(adjustment.address, autoset_source_) + adjustment.step;
    const bool is_in_range =
        !record.Active || (value >= record.MinValue && value <= record.MaxValue);
    if (is_in_range) bank_.Set(adjustment.address, autoset_source_, value);
  }
}

std::string SimulatedUnit::AnswerSlotQuery(const std::string& packet) {
  const Reading<SlotQuery> reading = ReadSlotQuery(packet);
  if (!reading.request) {
    ReportProblem(packet, reading.problem);
    return {};
  }
  const auto [slot, page] = *reading.request;
  const std::string meaning = UnitWords::OfSlotQuery(*reading.request);
  if (options_.recorded) return AnswerRecorded(packet, meaning);
  const auto index = static_cast<std::size_t>(slot);
  if (index >= options_.resolutions.size()) {
    ReportProblem(packet, meaning + ", which does not exist");
    return {};
  }
  Report(packet, meaning);
  return BuildSlotPacket(options_.resolutions[index], slot, page);
}

std::string SimulatedUnit::AnswerRecorded(const std::string& bytes, const std::string& meaning) {
  const std::optional<std::string> reply = options_.recorded->Next(bytes);
  if (reply) {
    Report(bytes, meaning);
  } else {
    ReportProblem(bytes, meaning + ", which was never recorded");
  }
  return reply.value_or(std::string(kErrorReply));
}

// ---------------------------------------------------------------------------------------------
// The front panel.

std::optional<int> SimulatedUnit::FindAddress(std::string_view text) const {
  const std::optional<int> address = ReadAddress(text);
  return address ? address : words_.FindName(text);
}

std::optional<std::string> SimulatedUnit::AddFault(std::string_view text) {
  return faults_.Add(text, [this](std::string_view word) { return FindAddress(word); });
}

std::string SimulatedUnit::ChangeAtFrontPanel(int address, int source, std::int32_t value) {
  bank_.Set(address, source, value);
  return BuildReply(ReplyTo::kWriteRequest, source, address, value + WireOffset(address));
}

std::string SimulatedUnit::NextUnaskedFrame() {
  constexpr std::int32_t kPanSteps = 101;
  unasked_value_ = (unasked_value_ + 1) % kPanSteps;
  return ChangeAtFrontPanel(addresses::kZoomPanH, kFirstSourceCode, unasked_value_);
}

std::int32_t SimulatedUnit::Value(int address, int source) const {
  switch (address) {
    case addresses::kProductType:
      return options_.product_type;
    case addresses::kSlotCount:
      return static_cast<std::int32_t>(options_.resolutions.size());
    case addresses::kAutoset:
      return autoset_reads_left_ > 0 ? 1 : 0;
    case addresses::kSourceCode:
      return source;
    case addresses::kNameIndex:
      return IsFitted(source) ? NameIndexOfSource(source) : kNotFitted;
    default:
      return bank_.Get(address, source);
  }
}

int SimulatedUnit::CurrentSource() const {
  const std::int32_t source = bank_.Get(addresses::kSetupSource, kFirstSourceCode);
  return source > 0 && source < kSourceCodes ? source : kFirstSourceCode;
}

// ---------------------------------------------------------------------------------------------
// Reports.

std::string SimulatedUnit::DescribeReply(std::string_view bytes) const {
  return words_.OfReply(bytes);
}

void SimulatedUnit::Report(std::string_view bytes, const std::string& meaning) {
  if (journal_) journal_(bytes, meaning, false);
}

void SimulatedUnit::ReportProblem(std::string_view bytes, const std::string& problem) {
  ++problems_;
  if (journal_) journal_(bytes, problem, true);
}

}  // namespace kalde2
