#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "link/serial_port.h"
#include "trace/frame_cutter.h"
#include "trace/recorded_replies.h"

namespace kalde2 {

/// A port on which a recorded unit answers, at once. Opening always succeeds, and nothing arrives
/// unasked. A request that was never recorded is refused as a unit refuses.
class ReplayPort final : public SerialPort {
 public:
  /// @param unknown told of each request that was never recorded
  explicit ReplayPort(RecordedReplies replies,
                      std::function<void(std::string_view request)> unknown)
      : replies_(std::move(replies)), unknown_(std::move(unknown)) {}

  [[nodiscard]] bool PortOpen() const override { return is_open_; }
  [[nodiscard]] std::optional<std::string> Open(const PortSetup& setup) override;
  void Close() override;
  void Output(std::string_view text) override;
  [[nodiscard]] std::string Input() override;
  void SetHandshaking(Handshaking /*handshaking*/) override {}

 private:
  void RequireOpen() const;

  RecordedReplies replies_;
  std::function<void(std::string_view request)> unknown_;
  FrameCutter requests_;
  std::string waiting_;
  bool is_open_ = false;
};

}  // namespace kalde2
