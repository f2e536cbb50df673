#pragma once

#include <string>

namespace kalde2 {

/// Per-user store of texts under application "KALDE2", addressed by section and key. All texts are
/// UTF-8.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  /// The stored text, which may be empty; `fallback` only where the key is absent.
  [[nodiscard]] virtual std::string GetSetting(const std::string& section, const std::string& key,
                                               const std::string& fallback) const = 0;

  /// Stores a text, durably before it returns. Failing to store is silent.
  virtual void SaveSetting(const std::string& section, const std::string& key,
                           const std::string& value) = 0;
};

/// The port that the operator used last, as he wrote it.
struct SerialSettings {
  std::string baud;  ///< "57600"; empty where none was chosen
  std::string port;  ///< "1"
};

/// What is stored of it, or what a first start begins with.
[[nodiscard]] SerialSettings LoadSerialSettings(const SettingsStore& store);
void SaveSerialSettings(SettingsStore& store, const SerialSettings& settings);

}  // namespace kalde2
