#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kalde2 {

/// A port that a number stands for.
struct NumberedPort {
  int number;
  std::string device;  ///< its path, in UTF-8
};

/// Which device a port number stands for. On Windows that is COM<n>. Elsewhere a symbolic link
/// `ports/<n>` in the folder `KALDE2` of the user's configuration wins; without one it is the n-th
/// serial port present.
class PortDirectory {
 public:
  virtual ~PortDirectory() = default;

  /// Device path of a port number; empty where it stands for none now.
  [[nodiscard]] virtual std::string DeviceFor(int number) const = 0;

  /// The ports that a number stands for now, ascending.
  [[nodiscard]] virtual std::vector<NumberedPort> PresentPorts() const = 0;

  /// Whom to tell, from the event loop, that links or devices came or went.
  void SetListener(std::function<void()> changed) { changed_ = std::move(changed); }

 protected:
  void TellChange() const {
    if (changed_) changed_();
  }

 private:
  std::function<void()> changed_;
};

}  // namespace kalde2
