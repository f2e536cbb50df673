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

QString Path(const QString& section, const QString& key) {
  return section + '/' + key;
}

}  // namespace

QString QtSettingsStore::GetSetting(const QString& section, const QString& key,
                                    const QString& fallback) const {
  const OwnSettings settings;
  return settings.value(Path(section, key), fallback).toString();
}

void QtSettingsStore::SaveSetting(const QString& section, const QString& key,
                                  const QString& value) {
  OwnSettings settings;
  settings.setValue(Path(section, key), value);
  settings.sync();
}

}  // namespace kalde2
