#pragma once

#include <memory>
#include <string>

namespace kalde2 {

/// The symbolic link `ports/<n>` under which a panel finds the unit. Removed with the object, if it
/// is still the one that was made.
class PortLink {
 public:
  struct Making;

  /// Links `device` as port `number` in `folder` ("<configuration>/KALDE2"), making the folders
  /// that are missing. A link that exists is never replaced, whether its device lives or not.
  [[nodiscard]] static Making Make(const std::string& folder, int number,
                                   const std::string& device);

  PortLink(std::string path, std::string device);
  ~PortLink();
  PortLink(const PortLink&) = delete;
  PortLink& operator=(const PortLink&) = delete;

  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
  std::string device_;
};

struct PortLink::Making {
  std::unique_ptr<PortLink> link;  ///< null when it failed
  std::string problem;             ///< why, one line
};

}  // namespace kalde2
