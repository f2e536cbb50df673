#include "trace/recorded_replies.h"

#include <gtest/gtest.h>

#include "tests/support/fake_link.h"
#include "trace/replay_port.h"
#include "trace/tracing_port.h"

namespace kalde2 {
namespace {

const std::string kReadFrame = "F841041010AE0\r";
const std::string kReply = "FC41041010A00000222\r";
const std::string kOtherReply = "FC41041010A00000323\r";
const std::string kWriteFrame = "F041041010A00000262\r";
const std::string kEcho = "F441041010A000002A2\r";
const std::string kUnasked = "F44104101590000001F\r";
const std::string kSlotQuery{"S\x07\xA2\x01\0\0\0\0?", 9};
const std::string kPacket{"S\x04\x11\x13\rF", 6};

/// Events of a line: "-" and what follows goes to the unit, all other texts come from it.
std::vector<TraceEvent> Line(const std::vector<std::string>& texts) {
  std::vector<TraceEvent> events;
  for (const std::string& text : texts) {
    const bool to_unit = text.starts_with('-');
    events.push_back(
        {{}, to_unit ? Direction::kToUnit : Direction::kFromUnit, text.substr(to_unit ? 1 : 0)});
  }
  return events;
}

TEST(RecordedReplies, AreGivenInTheirOrderWithoutWhatCameUnasked) {
  struct Case {
    const char* name;
    std::vector<std::string> line;
    std::string request;
    std::vector<std::string> replies;
  };
  const std::string out = "-";
  const Case cases[] = {
      {"later the last one",
       {out + kReadFrame, kReply, out + kReadFrame, kOtherReply},
       kReadFrame,
       {kReply, kOtherReply, kOtherReply}},
      {"in portions",
       {out + "F8410", out + kReadFrame.substr(5), "FC4", kReply.substr(3)},
       kReadFrame,
       {kReply}},
      {"silence at first",
       {out + kReadFrame, out + kReadFrame, kReply},
       kReadFrame,
       {"", kReply, kReply}},
      {"a refusal", {out + kReadFrame, "F0000\r"}, kReadFrame, {"F0000\r"}},
      {"frames unasked around it",
       {out + kReadFrame, kUnasked + kReply, kUnasked},
       kReadFrame,
       {kReply}},
      {"the same parameter unasked", {out + kWriteFrame, kEcho, kEcho}, kWriteFrame, {kEcho}},
      {"unasked before the first request",
       {kUnasked, out + kReadFrame, kReply},
       kReadFrame,
       {kReply}},
      {"unasked behind a packet", {out + kSlotQuery, kPacket + kUnasked}, kSlotQuery, {kPacket}},
      {"nothing but another frame",
       {out + kReadFrame, kUnasked, out + kWriteFrame},
       kReadFrame,
       {kUnasked}},
      {"noise and flow control",
       {out + "\x13" + kReadFrame, "\x80~" + kReply + "\x11"},
       kReadFrame,
       {"\x80~" + kReply + "\x11"}},
      {"half an answer", {out + kReadFrame, "FC41041", out + kWriteFrame}, kReadFrame, {"FC41041"}},
  };
  for (const Case& line : cases) {
    RecordedReplies replies(Line(line.line));
    for (const std::string& reply : line.replies) {
      EXPECT_EQ(replies.Next(line.request), reply) << line.name;
    }
    EXPECT_EQ(replies.Next("F84104101590\r"), std::nullopt) << line.name;
  }
  // Cut off before its reply, that is not known.
  EXPECT_EQ(RecordedReplies(Line({out + kWriteFrame, kEcho, out + kReadFrame})).Next(kReadFrame),
            std::nullopt);
}

TEST(ReplayPort, AnswersWhatATracingPortHasSeenAndRefusesTheRest) {
  std::vector<TraceEvent> events;
  std::vector<std::string> unknown;
  FakePort line;
  line.on_write = [&](std::string_view frame) { return frame == kReadFrame ? kReply : kPacket; };
  TracingPort tracing(line, [&](const TraceEvent& event) { events.push_back(event); });
  const auto ask = [](SerialPort& port, const std::string& request) {
    EXPECT_EQ(port.Open({}), std::nullopt);
    port.Output(request);
    return port.Input();
  };
  EXPECT_EQ(ask(tracing, kReadFrame) + tracing.Input(), kReply);
  EXPECT_EQ(ask(tracing, kSlotQuery), kPacket);
  EXPECT_EQ(events.size(), 4U);

  ReplayPort replay{RecordedReplies(events),
                    [&](std::string_view request) { unknown.emplace_back(request); }};
  EXPECT_FALSE(replay.PortOpen());
  EXPECT_EQ(ask(replay, kSlotQuery), kPacket);
  EXPECT_EQ(ask(replay, kReadFrame), kReply);
  EXPECT_EQ(ask(replay, kWriteFrame), "F0000\r");
  EXPECT_EQ(unknown, std::vector{kWriteFrame});
  replay.Close();
  EXPECT_THROW((void)replay.Input(), Fault);
}

}  // namespace
}  // namespace kalde2
