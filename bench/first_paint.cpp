// Starts a program and waits until it has painted its first window, as the X server sees it. Prints
// the milliseconds from the start to the paint and the program's process number, and leaves it
// running.
//
//   first_paint PROGRAM [ARGUMENTS]

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;
template <typename Reply>
using Received = std::unique_ptr<Reply, decltype(&std::free)>;

constexpr std::uint8_t kResponseType = 0x7f;  // without the mark of events sent by clients

/// Asks for the windows that are made from now on, and for nothing that is drawn yet.
/// @return the number of the damage event
std::uint8_t WatchWindows(xcb_connection_t* x) {
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(x, root, XCB_CW_EVENT_MASK, &events);
  const Received<xcb_damage_query_version_reply_t> version(
      xcb_damage_query_version_reply(
          x, xcb_damage_query_version(x, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
          nullptr),
      &std::free);
  const auto* const damage = xcb_get_extension_data(x, &xcb_damage_id);
  return static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
}

/// Toolkits keep small windows for their own purposes out of sight.
bool IsForPeople(const xcb_create_notify_event_t& window) {
  constexpr int kLeast = 50;
  return window.width >= kLeast && window.height >= kLeast;
}

/// Serves the X server until a window has been painted. @return false where the server goes away
bool AwaitPaint(xcb_connection_t* x, std::uint8_t damage_notify) {
  while (const Received<xcb_generic_event_t> event{xcb_wait_for_event(x), &std::free}) {
    const std::uint8_t type = event->response_type & kResponseType;
    if (type == damage_notify) return true;
    if (type != XCB_CREATE_NOTIFY) continue;
    const auto& window = reinterpret_cast<const xcb_create_notify_event_t&>(*event);
    if (!IsForPeople(window)) continue;
    xcb_damage_create(x, xcb_generate_id(x), window.window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_flush(x);
  }
  return false;
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc < 2) return EXIT_FAILURE;
  const Connection x(xcb_connect(nullptr, nullptr), &xcb_disconnect);
  if (xcb_connection_has_error(x.get()) != 0) return EXIT_FAILURE;
  const std::uint8_t damage_notify = WatchWindows(x.get());

  // What it has to say is not what this prints.
  posix_spawn_file_actions_t silence;
  posix_spawn_file_actions_init(&silence);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&silence, stream, "/dev/null", O_WRONLY, 0);
  }

  const auto start = Clock::now();
  pid_t program = 0;
  const int problem = posix_spawn(&program, argv[1], &silence, nullptr, argv + 1, environ);
  if (problem != 0) return EXIT_FAILURE;
  if (!AwaitPaint(x.get(), damage_notify)) return EXIT_FAILURE;
  const std::chrono::duration<double, std::milli> time = Clock::now() - start;
  std::printf("%.2f %d\n", time.count(), static_cast<int>(program));
  return EXIT_SUCCESS;
}
