#include "ctl/report.h"

namespace kalde2 {

std::string Place::Text() const {
  if (parameter.name.empty()) return '[' + std::to_string(parameter.Address()) + ']';
  if (!parameter.is_per_source) return parameter.name;
  return parameter.name + " of " + (input.empty() ? "source " + std::to_string(source) : input);
}

QJsonObject Place::Json() const {
  const bool has_source = parameter.is_per_source;
  return {{"address", parameter.Address()},
          {"name", TextJson(parameter.name)},
          {"source", has_source ? QJsonValue(source) : QJsonValue()},
          {"input", has_source ? TextJson(input) : QJsonValue()}};
}

Place PlaceOf(const UnitModel& unit, const ParameterWords& words, int address,
              std::int16_t source) {
  const CatalogueIndex index = IndexOf(address);
  const bool is_listed =
      index.number >= 0 && index.number < kCatalogueSize && unit.catalogue.Record(index).Active;
  if (is_listed) return {words.Describe(index), source, InputName(unit, source)};
  Place place;
  place.parameter.index = index;
  return place;
}

QJsonObject ValueJson(const Parameter& parameter, std::optional<std::int32_t> value) {
  return {{"value", value ? QJsonValue(*value) : QJsonValue()},
          {"label", value ? TextJson(parameter.Label(*value)) : QJsonValue()}};
}

QJsonObject Together(QJsonObject left, const QJsonObject& right) {
  for (auto member = right.begin(); member != right.end(); ++member) {
    left.insert(member.key(), member.value());
  }
  return left;
}

QJsonValue TextJson(const std::string& text) {
  return text.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(text));
}

}  // namespace kalde2
