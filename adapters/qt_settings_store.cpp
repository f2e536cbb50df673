#include "adapters/qt_settings_store.h"

#include <QSettings>

namespace kalde2 {
namespace {

constexpr auto kOrganisation = "KALDE2";
constexpr auto kApplication = "KALDE2";

/// This program's store of the user. Those of all users and of all programs do not answer for it.
struct OwnSettings : QSettings {
  OwnSettings() : QSettings(UserScope, kOrganisation, kApplication) { setFallbacksEnabled(false); }
};

QString Path(const std::string& section, const std::string& key) {
  return QString::fromStdString(section + '/' + key);
}

}  // namespace

std::string QtSettingsStore::GetSetting(const std::string& section, const std::string& key,
                                        const std::string& fallback) const {
  const OwnSettings settings;
  const QVariant value = settings.value(Path(section, key));
  return value.isValid() ? value.toString().toStdString() : fallback;
}

void QtSettingsStore::SaveSetting(const std::string& section, const std::string& key,
                                  const std::string& value) {
  OwnSettings settings;
  settings.setValue(Path(section, key), QString::fromStdString(value));
  settings.sync();
}

}  // namespace kalde2
