#include "adapters/qt_settings_store.h"

#include <QSettings>

namespace kalde2 {
namespace {

constexpr auto kOrganisation = "KALDE2";
constexpr auto kApplication = "KALDE2";

QString Path(const QString& section, const QString& key) {
  return section + '/' + key;
}

}  // namespace

QString QtSettingsStore::GetSetting(const QString& section, const QString& key,
                                    const QString& fallback) const {
  const QSettings settings(QSettings::UserScope, kOrganisation, kApplication);
  return settings.value(Path(section, key), fallback).toString();
}

void QtSettingsStore::SaveSetting(const QString& section, const QString& key,
                                  const QString& value) {
  QSettings settings(QSettings::UserScope, kOrganisation, kApplication);
  settings.setValue(Path(section, key), value);
  settings.sync();
}

}  // namespace kalde2
