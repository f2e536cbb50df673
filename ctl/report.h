#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <cstdint>
#include <optional>
#include <string>

#include "ctl/parameter_words.h"

// The pieces that the results are made of. In JSON what is missing is null, and lists stay lists
// whatever is in them.

namespace kalde2 {

/// A parameter, and where it is kept per source the source that is meant.
struct Place {
  Parameter parameter;
  std::int16_t source = 0;  ///< source code of the requests
  std::string input;        ///< name of that input, where it is known

  /// "Zoom", "Brightness of CV 1", "Brightness of source 48", "[500]" where it has no name.
  [[nodiscard]] std::string Text() const;

  /// {"address": 187, "name": "Brightness", "source": 48, "input": "CV 1"}; source and input are
  /// null for a parameter that is not kept per source,
  /// and so is the name of one that the product does not list.
  [[nodiscard]] QJsonObject Json() const;
};

/// The place that an address and a source code stand for, in the words of a unit.
[[nodiscard]] Place PlaceOf(const UnitModel& unit, const ParameterWords& words, int address,
                            std::int16_t source);

/// {"value": 2, "label": "Lock+Mix"}; the label is null where the value has none, and both are
/// where there is no value.
[[nodiscard]] QJsonObject ValueJson(const Parameter& parameter, std::optional<std::int32_t> value);

/// The members of both.
[[nodiscard]] QJsonObject Together(QJsonObject left, const QJsonObject& right);

/// A text, null where it is empty.
[[nodiscard]] QJsonValue TextJson(const std::string& text);

}  // namespace kalde2
