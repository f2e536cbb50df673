#include "session/settings_store.h"

namespace kalde2 {
namespace {

constexpr const char* kSection = "Tessaly";
constexpr const char* kSerialParameters = "Serial Parameters";
constexpr const char* kSerialPort = "Serial Port";

}  // namespace

SerialSettings LoadSerialSettings(const SettingsStore& store) {
  return {store.GetSetting(kSection, kSerialParameters, "57600"),
          store.GetSetting(kSection, kSerialPort, "1")};
}

void SaveSerialSettings(SettingsStore& store, const SerialSettings& settings) {
  store.SaveSetting(kSection, kSerialParameters, settings.baud);
  store.SaveSetting(kSection, kSerialPort, settings.port);
}

}  // namespace kalde2
