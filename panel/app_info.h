#pragma once

namespace kalde2 {

/// Title, description and version of the application, from the build.
struct AppInfo {
  static constexpr const char* kTitle = KALDE2_APP_TITLE;
  static constexpr const char* kDescription = KALDE2_APP_DESCRIPTION;
  static constexpr const char* kVersion = KALDE2_APP_VERSION;
};

}  // namespace kalde2
