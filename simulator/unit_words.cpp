#include "simulator/unit_words.h"

#include <algorithm>

#include "link/fault.h"
#include "simulator/unit_addresses.h"

namespace kalde2 {
namespace {

/// Parameters of some products that the others have as well without listing them.
struct UnlistedParameter {
  int address;
  std::string_view name;
};

constexpr std::array kUnlistedParameters =
    std::to_array<UnlistedParameter>({{134, "Zoom"}, {135, "Shrink"}, {403, "Fade"}});

const UnlistedParameter* FindUnlisted(int address) {
  const auto found = std::ranges::find(kUnlistedParameters, address, &UnlistedParameter::address);
  return found == kUnlistedParameters.end() ? nullptr : &*found;
}

ValueNames NamesFor(std::int32_t product_type, const std::vector<int>& fitted_sources) {
  InputNames inputs;
  LoadInputNames(inputs);
  Connectivity connectivity;
  for (const int source : fitted_sources) {
    const auto index = static_cast<std::size_t>(source);
    connectivity.SourceFitted.at(index) = true;
    connectivity.SourceInfo.at(index).NameIndex =
        static_cast<std::int16_t>(NameIndexOfSource(source));
  }
  ValueNames names;
  try {
    LoadValueNames(names, product_type, inputs, connectivity);
  } catch (const Fault&) {
    // More sources than the lists have items: the rest go without a name.
  }
  return names;
}

}  // namespace

std::string InLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

UnitWords::UnitWords(const ParamCatalogue& catalogue, std::int32_t product_type,
                     const std::vector<int>& fitted_sources)
    : catalogue_(catalogue), value_names_(NamesFor(product_type, fitted_sources)) {}

std::string UnitWords::OfRequest(const UnitRequest& request) const {
  const std::string parameter = Parameter(request.address, request.source);
  if (request.is_read) return "reads " + parameter;
  const std::int32_t value = request.value - WireOffset(request.address);
  return "sets " + parameter + " to " + Value(request.address, value) +
         RangeRemark(request.address, value);
}

std::string UnitWords::OfSlotQuery(const SlotQuery& query) {
  return "asks for page " + std::to_string(query.page) + " of resolution slot " +
         std::to_string(query.slot);
}

std::string UnitWords::OfReply(std::string_view bytes) const {
  if (bytes == kErrorReply) return "refused";
  if (bytes.starts_with('S')) return "resolution slot data";
  const std::optional<UnitReply> reply = ReadOwnReply(bytes);
  if (!reply) return "no whole frame";
  return Parameter(reply->address, reply->source) + " is " +
         Value(reply->address, reply->value - WireOffset(reply->address));
}

const ParamRecord* UnitWords::ListedRecord(int address) const {
  if (!IsParameter(address) || FindSpecial(address) != nullptr) return nullptr;
  const ParamRecord& record = catalogue_.Record(IndexOf(address));
  return record.Active ? &record : nullptr;
}

std::string UnitWords::Parameter(int address, int source) const {
  const ParamRecord* record = ListedRecord(address);
  std::string text(Name(address));
  text += " [" + std::to_string(address) + ']';
  const bool has_source = address == addresses::kSourceCode || address == addresses::kNameIndex ||
                          (record != nullptr && record->PerSource);
  if (has_source) text += " of source " + std::to_string(source);
  return text;
}

std::string UnitWords::Value(int address, std::int32_t value) const {
  const std::string label = ValueLabel(address, value);
  return std::to_string(value) + (label.empty() ? "" : " (" + label + ')');
}

std::string UnitWords::ValueLabel(int address, std::int32_t value) const {
  const ParamRecord* record = ListedRecord(address);
  if (record == nullptr || !record->HasList) return {};
  for (int item = 0; item < ValueNames::kItems; ++item) {
    const std::string& text = value_names_.Item(record->ListId, item);
    if (text.empty()) continue;
    if (!record->UseItemData) {
      if (item == value) return text;
    } else if (const LabelledNumber labelled = SplitItem(text); labelled.number == value) {
      return labelled.label;
    }
  }
  return {};
}

std::string UnitWords::RangeRemark(int address, std::int32_t value) const {
  const ParamRecord* record = ListedRecord(address);
  if (record == nullptr || record->HasList) return {};
  if (value >= record->MinValue && value <= record->MaxValue) return {};
  return ", outside " + Range(address);
}

std::string UnitWords::Range(int address) const {
  const ParamRecord* record = ListedRecord(address);
  if (record == nullptr || record->HasList) return {};
  return std::to_string(record->MinValue) + ".." + std::to_string(record->MaxValue);
}

std::string_view UnitWords::Name(int address) const {
  if (const SpecialAddress* special = FindSpecial(address)) return special->name;
  if (const ParamRecord* record = ListedRecord(address)) return record->Name;
  const UnlistedParameter* unlisted = FindUnlisted(address);
  return unlisted != nullptr ? unlisted->name : "(not listed)";
}

std::vector<int> UnitWords::NamedAddresses() const {
  std::vector<int> addresses;
  for (const CatalogueIndex index : catalogue_.ActiveParams()) {
    addresses.push_back(AddressOf(index));
  }
  for (const UnlistedParameter& parameter : kUnlistedParameters) {
    if (ListedRecord(parameter.address) == nullptr) addresses.push_back(parameter.address);
  }
  for (const SpecialAddress& special : kSpecialAddresses) addresses.push_back(special.address);
  return addresses;
}

std::optional<int> UnitWords::FindName(std::string_view name) const {
  const std::string wanted = InLowerCase(name);
  for (const int address : NamedAddresses()) {
    if (InLowerCase(Name(address)) == wanted) return address;
  }
  return std::nullopt;
}

}  // namespace kalde2
