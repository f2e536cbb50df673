#pragma once

#include "panel/settings_store.h"

namespace kalde2 {

/// The system's settings of the current user; sections are groups.
class QtSettingsStore final : public SettingsStore {
 public:
  [[nodiscard]] QString GetSetting(const QString& section, const QString& key,
                                   const QString& fallback) const override;
  void SaveSetting(const QString& section, const QString& key, const QString& value) override;
};

}  // namespace kalde2
