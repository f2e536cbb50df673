#pragma once

#include "session/settings_store.h"

namespace kalde2 {

/// The system's settings of the current user; sections are groups.
class QtSettingsStore final : public SettingsStore {
 public:
  [[nodiscard]] std::string GetSetting(const std::string& section, const std::string& key,
                                       const std::string& fallback) const override;
  void SaveSetting(const std::string& section, const std::string& key,
                   const std::string& value) override;
};

}  // namespace kalde2
