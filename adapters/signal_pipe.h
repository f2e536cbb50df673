#pragma once

namespace kalde2 {

/// SIGINT, SIGTERM and SIGHUP as something to wait on, so that the program can tidy up. One object
/// in a program.
class SignalPipe {
 public:
  /// What becomes of a signal that the program was started with ignored, as by nohup or in the
  /// background of a script.
  enum class Ignored { kStays, kCaught };

  /// @throws std::system_error where the system has no pipe left
  explicit SignalPipe(Ignored ignored);
  ~SignalPipe();
  SignalPipe(const SignalPipe&) = delete;
  SignalPipe& operator=(const SignalPipe&) = delete;

  /// Becomes readable at a signal.
  [[nodiscard]] int Descriptor() const { return read_end_; }

  /// Takes note of the signals so far: the next one makes it readable again.
  void Drain() const;

 private:
  int read_end_ = -1;
};

}  // namespace kalde2
