// The program kalde2-unit as its users meet it: a process, a link, a terminal device, signals.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

extern char** environ;

namespace kalde2 {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kPatience(5000);
constexpr milliseconds kQuiet(300);
const std::string kTypeQuery = "F84104100C499\r";
const std::string kTypeReply = "FC4104100C4000023FC\r";

/// Reads until `end` has come, or nothing more comes within the time.
std::string ReadUntil(int descriptor, const std::string& end, milliseconds patience) {
  const auto deadline = steady_clock::now() + patience;
  std::string text;
  while (text.find(end) == std::string::npos) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    pollfd wait{descriptor, POLLIN, 0};
    if (left.count() <= 0 || poll(&wait, 1, static_cast<int>(left.count())) <= 0) break;
    char buffer[512];
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    if (count <= 0) break;
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return text;
}

/// A running kalde2-unit with pipes for its standard input and output.
class UnitProcess {
 public:
  explicit UnitProcess(std::vector<std::string> options) {
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) std::abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDERR_FILENO);
    options.insert(options.begin(), KALDE2_UNIT);
    std::vector<char*> arguments;
    for (std::string& option : options) arguments.push_back(option.data());
    arguments.push_back(nullptr);
    if (posix_spawn(&pid_, KALDE2_UNIT, &actions, nullptr, arguments.data(), environ) != 0) {
      pid_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    commands_ = input[1];
    output_ = output[0];
  }

  ~UnitProcess() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    CloseCommands();
    close(output_);
  }

  std::string Expect(const std::string& text) { return ReadUntil(output_, text, kPatience); }

  /// True when the text comes.
  bool Says(const std::string& text) { return Expect(text).find(text) != std::string::npos; }

  bool IsReady() { return Expect("\n").starts_with("ready: port"); }

  void Command(const std::string& line) {
    ASSERT_EQ(write(commands_, line.data(), line.size()), static_cast<ssize_t>(line.size()));
  }

  void CloseCommands() {
    if (commands_ >= 0) close(commands_);
    commands_ = -1;
  }

  void Signal(int signal) const { kill(pid_, signal); }

  /// The exit code, or -1 for a process that a signal ended or that does not end.
  int ExitCode() {
    const auto deadline = steady_clock::now() + kPatience;
    int status = 0;
    while (waitpid(pid_, &status, WNOHANG) == 0) {
      if (steady_clock::now() > deadline) return -1;
      usleep(5000);
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t pid_ = -1;
  int commands_ = -1;
  int output_ = -1;
};

/// The panel's end of the line, opened raw at a rate.
class Line {
 public:
  explicit Line(const std::string& device, speed_t speed = B57600)
      : descriptor_(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    termios settings{};
    tcgetattr(descriptor_, &settings);
    cfmakeraw(&settings);
    cfsetspeed(&settings, speed);
    tcsetattr(descriptor_, TCSANOW, &settings);
  }
  ~Line() { close(descriptor_); }

  std::string Exchange(const std::string& request, milliseconds patience = kPatience) {
    EXPECT_EQ(write(descriptor_, request.data(), request.size()),
              static_cast<ssize_t>(request.size()));
    return ReadUntil(descriptor_, "\r", patience);
  }

  std::string Listen(milliseconds patience = kPatience) {
    return ReadUntil(descriptor_, "\r", patience);
  }

  /// True once the device has gone away under the open descriptor.
  bool HangsUp() {
    pollfd wait{descriptor_, 0, 0};
    return poll(&wait, 1, static_cast<int>(kPatience.count())) == 1 && (wait.revents & POLLHUP);
  }

  /// Throws away what has arrived so far.
  void Drain() { (void)ReadUntil(descriptor_, "\n", kQuiet); }

 private:
  int descriptor_;
};

class UnitProgram : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "kalde2-unit-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Link(int port) const { return folder_ + "/KALDE2/ports/" + std::to_string(port); }

  std::string folder_;
};

TEST_F(UnitProgram, ServesItsLinkAcrossReopeningAndRemovesItOnEverySignal) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    UnitProcess unit({"--port", "7"});
    const std::string ready = unit.Expect("\n");
    ASSERT_EQ(ready, "ready: port 7 is " + fs::read_symlink(Link(7)).string() + "\n");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Line(Link(7)).Exchange(kTypeQuery), kTypeReply);
    EXPECT_NE(unit.Expect("-> FC4").find("reads Product type [196]"), std::string::npos);
    unit.Signal(signal);
    EXPECT_EQ(unit.ExitCode(), 0);
    EXPECT_FALSE(fs::is_symlink(Link(7)));
  }
}

TEST_F(UnitProgram, TakesFrontPanelCommandsUntilTheirEndAndLivesOn) {
  UnitProcess unit({"--quiet"});
  ASSERT_TRUE(unit.IsReady());
  Line line(Link(1));
  ASSERT_EQ(line.Exchange(kTypeQuery), kTypeReply);
  unit.Command("set 266 2\nget 266\n");
  EXPECT_EQ(line.Listen(), "F441041010A000002A2\r");
  EXPECT_EQ(unit.Expect("\n"), "2\n");
  unit.CloseCommands();
  EXPECT_EQ(line.Exchange(kTypeQuery), kTypeReply);
}

TEST_F(UnitProgram, NeverOverwritesALink) {
  fs::create_directories(folder_ + "/KALDE2/ports");
  fs::create_symlink("/dev/pts/99999", Link(1));
  UnitProcess unit({});
  const std::string said = unit.Expect("\n");
  EXPECT_NE(said.find("which is gone; if no unit uses it, remove it: rm '" + Link(1) + "'"),
            std::string::npos)
      << said;
  EXPECT_EQ(unit.ExitCode(), 1);
  EXPECT_EQ(fs::read_symlink(Link(1)), "/dev/pts/99999");
}

TEST_F(UnitProgram, RefusesOptionsThatItDoesNotUnderstand) {
  for (const char* option : {"--port=x", "--sources=16,300", "--baud=-1", "--fault=loud",
                             "--resolutions=256", "--resolutions=/nowhere", "extra"}) {
    UnitProcess unit({option});
    EXPECT_EQ(unit.ExitCode(), 1) << option;
    EXPECT_FALSE(fs::is_symlink(Link(1))) << option;
  }
}

TEST_F(UnitProgram, WithARateItIsPacedAndDeafToOtherRates) {
  UnitProcess unit({"--baud", "9600"});
  ASSERT_TRUE(unit.IsReady());
  EXPECT_EQ(Line(Link(1), B57600).Exchange(kTypeQuery, kQuiet), "");
  EXPECT_NE(unit.Expect("not understood").find("the panel runs at 57600 baud"), std::string::npos);
  Line line(Link(1), B9600);
  const auto start = steady_clock::now();
  EXPECT_EQ(line.Exchange(kTypeQuery), kTypeReply);
  // 34 characters of 10 bits.
  EXPECT_GE(steady_clock::now() - start, milliseconds(35));
}

TEST_F(UnitProgram, HangsUpInAReplyAndComesBackOnANewDevice) {
  UnitProcess unit({"--quiet", "--fault", "hang-up-during=2"});
  ASSERT_TRUE(unit.IsReady());
  {
    Line line(Link(1));
    EXPECT_EQ(line.Exchange(kTypeQuery), kTypeReply);
    EXPECT_EQ(line.Exchange(kTypeQuery, kQuiet), kTypeReply.substr(0, 10));
    EXPECT_TRUE(line.HangsUp());
  }
  EXPECT_TRUE(unit.Says("hung up"));
  EXPECT_FALSE(fs::is_symlink(Link(1)));
  unit.Command("replug\n");
  ASSERT_TRUE(unit.IsReady());
  EXPECT_EQ(Line(Link(1)).Exchange(kTypeQuery), kTypeReply);
}

TEST_F(UnitProgram, LosesWhatAPanelDoesNotReadAndStaysAlive) {
  UnitProcess unit({"--quiet", "--fault", "unasked=10000"});
  EXPECT_TRUE(unit.Says("characters are lost"));
  unit.Command("fault none\n");
  EXPECT_TRUE(unit.Says("faults: none"));
  Line line(Link(1));
  line.Drain();
  EXPECT_EQ(line.Exchange(kTypeQuery), kTypeReply);
  unit.Command("quit\n");
  EXPECT_EQ(unit.ExitCode(), 0);
}

}  // namespace
}  // namespace kalde2
