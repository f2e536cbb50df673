#pragma once

#include <unistd.h>

#include <exception>

namespace kalde2 {

/// Gives up the rights of root, whom nothing stops, while the scope lasts.
class OrdinaryUser {
 public:
  OrdinaryUser() { Become(65534); }
  ~OrdinaryUser() { Become(0); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  void Become(uid_t user) const {
    if (was_root_ && setresuid(user, user, 0) != 0) std::terminate();
  }

  bool was_root_ = getuid() == 0;
};

}  // namespace kalde2
