#include "simulator/unit.h"

#include <algorithm>
#include <array>

#include "link/fault.h"

namespace kalde2 {
namespace {

constexpr int kResolution = 131;
constexpr int kInputPixelPhase = 145;
constexpr int kZoomPanH = 159;
constexpr int kLeftShift = 182;
constexpr int kTopShift = 183;
constexpr int kProductType = 0xC4;
constexpr int kStore = 200;
constexpr int kSlotCount = 216;
constexpr int kRightShift = 222;
constexpr int kBottomShift = 223;
constexpr int kReset = 241;
constexpr int kAutoset = 254;
constexpr int kSetupSource = 278;
constexpr int kSourceCode = 404;
constexpr int kNameIndex = 405;

/// Addresses with a meaning of their own beside the catalogue.
struct SpecialAddress {
  int address;
  std::string_view name;
  bool is_read_only;
};

constexpr std::array kSpecialAddresses = std::to_array<SpecialAddress>({
    {kProductType, "Product type", true},
    {kStore, "Store", false},
    {kSlotCount, "Resolution slots", true},
    {kReset, "Reset", false},
    {kAutoset, "Autoset", false},
    {kSourceCode, "Source code", true},
    {kNameIndex, "Input name", true},
});

/// Parameters of some products that the others have as well without listing them.
struct UnlistedParameter {
  int address;
  std::string_view name;
};

constexpr std::array kUnlistedParameters =
    std::to_array<UnlistedParameter>({{134, "Zoom"}, {135, "Shrink"}, {403, "Fade"}});

std::string_view UnlistedName(int address) {
  const auto found =
      std::find_if(kUnlistedParameters.begin(), kUnlistedParameters.end(),
                   [&](const auto& parameter) { return parameter.address == address; });
  return found == kUnlistedParameters.end() ? "(not listed)" : found->name;
}

const SpecialAddress* FindSpecial(int address) {
  const auto found = std::find_if(kSpecialAddresses.begin(), kSpecialAddresses.end(),
                                  [&](const auto& special) { return special.address == address; });
  return found == kSpecialAddresses.end() ? nullptr : &*found;
}

/// By how much autoset moves what it adjusts.
struct Adjustment {
  int address;
  std::int32_t step;
};

constexpr std::array kAutosetAdjustments = std::to_array<Adjustment>({{kLeftShift, 2},
                                                                      {kTopShift, -1},
                                                                      {kRightShift, -2},
                                                                      {kBottomShift, 1},
                                                                      {kInputPixelPhase, 3}});

bool IsParameter(int address) {
  return address >= kFirstParameter && address <= kLastParameter;
}

/// On the line a resolution is one more than its position in the list.
std::int32_t WireOffset(int address) {
  return address == kResolution ? 1 : 0;
}

/// The input names count the RGB inputs from 0, their source numbers from 16.
std::int32_t NameIndexOfSource(int source) {
  return source >= 16 && source <= 31 ? source - 16 : source;
}

ValueNames NamesFor(const UnitOptions& options) {
  InputNames inputs;
  LoadInputNames(inputs);
  Connectivity connectivity;
  for (const int source : options.fitted_sources) {
    const auto index = static_cast<std::size_t>(source);
    connectivity.SourceFitted.at(index) = true;
    connectivity.SourceInfo.at(index).NameIndex =
        static_cast<std::int16_t>(NameIndexOfSource(source));
  }
  ValueNames names;
  try {
    LoadValueNames(names, options.product_type, inputs, connectivity);
  } catch (const Fault&) {
    // More sources than the lists have items: the rest go without a name.
  }
  return names;
}

}  // namespace

SimulatedUnit::SimulatedUnit(UnitOptions options, Journal journal)
    : options_(std::move(options)),
      journal_(std::move(journal)),
      catalogue_(CatalogueFor(options_.product_type)),
      value_names_(NamesFor(options_)),
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
  Report(frame, DescribeRequest(request));
  return request.is_read ? AnswerRead(request) : AnswerWrite(request);
}

std::string SimulatedUnit::AnswerRead(const UnitRequest& request) {
  return BuildReply(ReplyTo::kReadRequest, request.source, request.address,
                    ReadValue(request) + WireOffset(request.address));
}

std::int32_t SimulatedUnit::ReadValue(const UnitRequest& request) {
  switch (request.address) {
    case kProductType:
      return options_.product_type;
    case kSlotCount:
      return static_cast<std::int32_t>(options_.resolutions.size());
    case kAutoset:
      return ReadAutoset();
    case kSourceCode:
      return request.source;
    case kNameIndex:
      return IsFitted(request.source) ? NameIndexOfSource(request.source) : kNotFitted;
    default:
      return bank_.Get(request.address, request.source);
  }
}

bool SimulatedUnit::IsFitted(int source) const {
  return std::ranges::find(options_.fitted_sources, source) != options_.fitted_sources.end();
}

std::string SimulatedUnit::AnswerWrite(const UnitRequest& request) {
  const SpecialAddress* special = FindSpecial(request.address);
  if (special != nullptr && special->is_read_only) return std::string(kErrorReply);
  if (special == nullptr) {
    bank_.Set(request.address, request.source, request.value - WireOffset(request.address));
  } else if (request.address == kAutoset) {
    autoset_reads_left_ = options_.autoset_reads;
    autoset_source_ = request.source;
    if (autoset_reads_left_ == 0) FinishAutoset();
  } else if (request.address == kReset) {
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
    const ParamRecord& record = catalogue_.Record(adjustment.address - kFirstParameter);
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
  const std::string meaning =
      "asks for page " + std::to_string(page) + " of resolution slot " + std::to_string(slot);
  const auto index = static_cast<std::size_t>(slot);
  if (index >= options_.resolutions.size()) {
    ReportProblem(packet, meaning + ", which does not exist");
    return {};
  }
  Report(packet, meaning);
  return BuildSlotPacket(options_.resolutions[index], slot, page);
}

// ---------------------------------------------------------------------------------------------
// The front panel.

std::string SimulatedUnit::ChangeAtFrontPanel(int address, int source, std::int32_t value) {
  bank_.Set(address, source, value);
  return BuildReply(ReplyTo::kWriteRequest, source, address, value + WireOffset(address));
}

std::string SimulatedUnit::NextUnaskedFrame() {
  constexpr std::int32_t kPanSteps = 101;
  unasked_value_ = (unasked_value_ + 1) % kPanSteps;
  return ChangeAtFrontPanel(kZoomPanH, kFirstSourceCode, unasked_value_);
}

std::int32_t SimulatedUnit::Value(int address, int source) const {
  return bank_.Get(address, source);
}

int SimulatedUnit::CurrentSource() const {
  const std::int32_t source = bank_.Get(kSetupSource, kFirstSourceCode);
  return source > 0 && source < kSourceCodes ? source : kFirstSourceCode;
}

// ---------------------------------------------------------------------------------------------
// Words for people.

std::string SimulatedUnit::DescribeParameter(int address) const {
  std::string name;
  if (const SpecialAddress* special = FindSpecial(address)) {
    name = special->name;
  } else if (IsParameter(address)) {
    const ParamRecord& record = catalogue_.Record(address - kFirstParameter);
    name = record.Active ? record.Name : UnlistedName(address);
  } else {
    name = "(no parameter)";
  }
  return name + " [" + std::to_string(address) + ']';
}

std::string SimulatedUnit::ValueLabel(int address, std::int32_t value) const {
  if (FindSpecial(address) != nullptr || !IsParameter(address)) return {};
  const ParamRecord& record = catalogue_.Record(address - kFirstParameter);
  if (!record.Active || !record.HasList) return {};
  for (int item = 0; item < ValueNames::kItems; ++item) {
    const std::string& text = value_names_.Item(record.ListId, item);
    if (text.empty()) continue;
    if (!record.UseItemData) {
      if (item == value) return text;
    } else if (const LabelledNumber labelled = SplitItem(text); labelled.number == value) {
      return labelled.label;
    }
  }
  return {};
}

std::string SimulatedUnit::RangeRemark(int address, std::int32_t value) const {
  if (FindSpecial(address) != nullptr) return {};
  const ParamRecord& record = catalogue_.Record(address - kFirstParameter);
  if (!record.Active || record.HasList) return {};
  if (value >= record.MinValue && value <= record.MaxValue) return {};
  return ", outside " + std::to_string(record.MinValue) + ".." + std::to_string(record.MaxValue);
}

std::string SimulatedUnit::DescribeValue(int address, std::int32_t value) const {
  const std::string label = ValueLabel(address, value);
  return std::to_string(value) + (label.empty() ? "" : " (" + label + ')');
}

std::string SimulatedUnit::DescribeSource(int address, int source) const {
  const bool has_source = address == kSourceCode || address == kNameIndex ||
                          (IsParameter(address) && bank_.IsPerSource(address));
  return has_source ? " of source " + std::to_string(source) : "";
}

std::string SimulatedUnit::DescribeRequest(const UnitRequest& request) const {
  const std::string parameter =
      DescribeParameter(request.address) + DescribeSource(request.address, request.source);
  if (request.is_read) return "reads " + parameter;
  const std::int32_t value = request.value - WireOffset(request.address);
  return "sets " + parameter + " to " + DescribeValue(request.address, value) +
         RangeRemark(request.address, value);
}

std::string SimulatedUnit::DescribeReply(std::string_view bytes) const {
  if (bytes == kErrorReply) return "refused";
  if (bytes.starts_with('S')) return "resolution slot data";
  const std::optional<UnitReply> reply = ReadOwnReply(bytes);
  if (!reply) return "no whole frame";
  return DescribeParameter(reply->address) + DescribeSource(reply->address, reply->source) +
         " is " + DescribeValue(reply->address, reply->value - WireOffset(reply->address));
}

void SimulatedUnit::Report(std::string_view bytes, const std::string& meaning) {
  if (journal_) journal_(bytes, meaning, false);
}

void SimulatedUnit::ReportProblem(std::string_view bytes, const std::string& problem) {
  ++problems_;
  if (journal_) journal_(bytes, problem, true);
}

}  // namespace kalde2
