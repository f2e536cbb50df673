#include "adapters/port_link.h"

#include <filesystem>
#include <system_error>

namespace kalde2 {
namespace {

namespace fs = std::filesystem;

/// The first number above that no link stands for.
int NextFreePort(const fs::path& ports, int number) {
  std::error_code error;
  do {
    ++number;
  } while (fs::exists(fs::symlink_status(ports / std::to_string(number), error)));
  return number;
}

/// Another number is the likelier wish, so it comes ahead of the removal.
std::string TakenProblem(const fs::path& path, int number, std::string_view cure) {
  std::error_code error;
  const fs::path device = fs::read_symlink(path, error);
  const std::string target = error ? "something else" : device.string();
  const bool is_dangling = !error && !fs::exists(device, error);
  return "port " + std::to_string(number) + " is taken: " + path.string() + " stands for " +
         target + (is_dangling ? ", which is gone" : "") + "; " + std::string(cure) + ' ' +
         std::to_string(NextFreePort(path.parent_path(), number)) +
         "; if no unit uses it, remove it: rm '" + path.string() + "'";
}

}  // namespace

PortLink::Making PortLink::Make(const std::string& folder, int number, const std::string& device,
                                std::string_view cure) {
  const fs::path path = fs::path(folder) / std::to_string(number);
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) return {nullptr, "cannot make " + folder + ": " + error.message()};
  fs::create_symlink(device, path, error);
  if (error == std::errc::file_exists) return {nullptr, TakenProblem(path, number, cure)};
  if (error) return {nullptr, "cannot make " + path.string() + ": " + error.message()};
  return {std::make_unique<PortLink>(path.string(), device), {}};
}

PortLink::PortLink(std::string path, std::string device)
    : path_(std::move(path)), device_(std::move(device)) {}

PortLink::~PortLink() {
  std::error_code error;
  if (fs::read_symlink(path_, error) == device_) fs::remove(path_, error);
}

}  // namespace kalde2
