#pragma once

#include <QString>

namespace kalde2 {

/// Per-user store of texts under application "KALDE2", addressed by section and key.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  /// The stored text, which may be empty; `fallback` only where the key is absent.
  [[nodiscard]] virtual QString GetSetting(const QString& section, const QString& key,
                                           const QString& fallback) const = 0;

  /// Stores a text, durably before it returns. Failing to store is silent.
  virtual void SaveSetting(const QString& section, const QString& key, const QString& value) = 0;
};

}  // namespace kalde2
