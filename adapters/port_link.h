#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kalde2 {

/// The symbolic link `ports/<n>` under which a panel finds a line that a program offers. Removed
/// with the object, if it is still the one that was made.
class PortLink {
 public:
  struct Making;

  /// Links `device` as port `number` in `folder` ("<configuration>/KALDE2/ports"), making the
  /// folders that are missing. A link that exists is never replaced, whether its device lives or
  /// not.
  /// @param cure what to say ahead of the next number that is free, where `number` is taken; for
  ///   example "for a second unit use --port"
  [[nodiscard]] static Making Make(const std::string& folder, int number, const std::string& device,
                                   std::string_view cure);

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
