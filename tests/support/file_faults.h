#pragma once

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

namespace kalde2 {

/// A disk that is full for files of this process beyond a size, while the scope lasts.
class FullDisk {
 public:
  explicit FullDisk(rlim_t room) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = room;
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit");
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

/// Makes a folder one that this process may look into but not write to, nor to the files in it,
/// while the scope lasts. The rights of root, whom nothing stops, are given up meanwhile.
class UnwritableFolder {
 public:
  explicit UnwritableFolder(std::string folder) : folder_(std::move(folder)) {
    using std::filesystem::perms;
    for (const auto& file : std::filesystem::directory_iterator(folder_)) {
      permissions(file.path(), perms::owner_write, std::filesystem::perm_options::remove);
    }
    chmod(folder_.c_str(), 0555);
    constexpr uid_t kNobody = 65534;
    if (is_root_ && seteuid(kNobody) != 0) throw std::runtime_error("cannot stop being root");
  }
  ~UnwritableFolder() {
    if (is_root_ && seteuid(0) != 0) std::terminate();
    chmod(folder_.c_str(), 0755);
  }
  UnwritableFolder(const UnwritableFolder&) = delete;
  UnwritableFolder& operator=(const UnwritableFolder&) = delete;

 private:
  std::string folder_;
  bool is_root_ = geteuid() == 0;
};

}  // namespace kalde2
