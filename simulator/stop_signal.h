#pragma once

namespace kalde2 {

/// Turns SIGINT, SIGTERM and SIGHUP into something to wait on, so that the program can tidy up, and
/// ignores SIGPIPE, so that it outlives the reader of its output. One object in a program.
class StopSignal {
 public:
  StopSignal();
  ~StopSignal();
  StopSignal(const StopSignal&) = delete;
  StopSignal& operator=(const StopSignal&) = delete;

  /// Becomes readable at the first signal.
  [[nodiscard]] int Descriptor() const { return read_end_; }

 private:
  int read_end_ = -1;
};

}  // namespace kalde2
