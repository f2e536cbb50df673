// A unit that misbehaves, in time that does not pass.

#include "ctl/unit_access.h"

#include <gtest/gtest.h>

#include "ctl/parameter_words.h"
#include "simulator/unit.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

class UnitAccessTest : public testing::Test {
 protected:
  UnitAccessTest() {
    port.on_write = [this](std::string_view frame) {
      std::string answer;
      for (const LineAction& action : unit.Receive(frame)) answer += action.bytes;
      return filter ? filter(frame, answer) : answer;
    };
  }

  /// Status and words of what ends a step.
  template <typename Step>
  [[nodiscard]] static std::pair<ExitStatus, std::string> Ending(Step step) {
    try {
      step();
    } catch (const CommandFault& fault) {
      return {fault.Status(), fault.what()};
    }
    return {ExitStatus::kDone, {}};
  }

  SimulatedUnit unit{{.product_type = 35, .fitted_sources = {16, 48}}};
  std::function<std::string(std::string_view frame, const std::string& answer)> filter;
  FakePort port;
  FakeClock clock;
  FakeProgress progress;
  UnitAccess access{port, clock, {"1", "57600"}};
};

constexpr std::string_view kInput20 = "F8414";  // read from source 0x14

TEST_F(UnitAccessTest, AnInputThatDoesNotTellIsFittedForThePanelAlone) {
  filter = [](std::string_view frame, const std::string& answer) {
    return frame.starts_with(kInput20) ? "" : answer;
  };
  access.Open();
  access.LoadInputsAsPanel(progress);
  EXPECT_TRUE(access.Model().connectivity.IsFitted(20));
  EXPECT_EQ(access.Inputs().skipped.size(), 2U);
  access.UnitSession().DropUntoldInputs(access.Inputs());
  EXPECT_FALSE(access.Model().connectivity.IsFitted(20));
  const ParameterWords words(access.Model());
  EXPECT_EQ(words.Describe(words.Find("main input")).Takes(), "RGB 1, CV 1");
}

TEST_F(UnitAccessTest, AUnitThatFallsSilentEndsTheReadingOfItsInputsSoon) {
  access.Open();
  filter = [](std::string_view, const std::string&) { return std::string(); };
  const milliseconds start = clock.Monotonic();
  EXPECT_EQ(Ending([this] { access.LoadInputs(progress); }).first, ExitStatus::kNoUnit);
  EXPECT_LE(clock.Monotonic() - start, milliseconds(15'000));
  EXPECT_FALSE(port.open);
}

TEST_F(UnitAccessTest, WhatIsSaidUnaskedIsNoAnswer) {
  access.Open();
  for (const bool is_ahead : {true, false}) {
    filter = [this, is_ahead](std::string_view, const std::string& answer) {
      filter = {};
      const std::string unasked = unit.ChangeAtFrontPanel(159, 16, 12);
      return is_ahead ? unasked + answer : answer + unasked;
    };
    EXPECT_EQ(access.Read(160), 50);
  }
}

TEST_F(UnitAccessTest, NorIsItTheProductType) {
  for (const bool is_first : {true, false}) {
    filter = [this, is_first](std::string_view, const std::string& answer) {
      return (is_first ? "" : answer) + unit.ChangeAtFrontPanel(159, 16, 22);
    };
    const auto [status, text] = Ending([this] { access.Open(); });
    EXPECT_EQ(status, ExitStatus::kNoUnit);
    EXPECT_EQ(text, "the unit does not tell its type for all else that it sends; try again");
  }
}

TEST_F(UnitAccessTest, AnswersThatCannotBeReadEndTheCommand) {
  access.Open();
  filter = [](std::string_view, const std::string&) { return std::string("F44\r"); };
  const auto [status, text] = Ending([this] { (void)access.Read(160); });
  EXPECT_EQ(status, ExitStatus::kNoUnit);
  EXPECT_EQ(text, "the unit's answers make no sense; is 57600 its baud rate?");
}

TEST_F(UnitAccessTest, ASignalEndsAfterTheTransaction) {
  access.Open();
  filter = [](std::string_view, const std::string&) { return std::string(); };
  clock.After(milliseconds(100), [this] { access.Interrupt(); });
  clock.After(milliseconds(500), [this] {
    EXPECT_TRUE(port.open);
    port.Receive(unit.ChangeAtFrontPanel(160, 16, 12));
  });
  EXPECT_EQ(Ending([this] { (void)access.Read(160); }).first, ExitStatus::kInterrupted);
  EXPECT_FALSE(port.open);
  EXPECT_EQ(port.written.size(), 2U);
}

TEST_F(UnitAccessTest, ASecondSignalEndsAtOnce) {
  access.Open();
  filter = [](std::string_view, const std::string&) { return std::string(); };
  const milliseconds start = clock.Monotonic();
  for (const int delay : {100, 200}) {
    clock.After(milliseconds(delay), [this] { access.Interrupt(); });
  }
  EXPECT_EQ(Ending([this] { (void)access.Read(160); }).first, ExitStatus::kInterrupted);
  EXPECT_LE(clock.Monotonic() - start, milliseconds(1000));
}

TEST_F(UnitAccessTest, NoDeadlineIsLostAtTheEndOfAnHour) {
  access.Open();
  filter = [](std::string_view, const std::string&) { return std::string(); };
  clock.SetMillisecondOfHour(std::chrono::hours(1) - milliseconds(300));
  EXPECT_EQ(Ending([this] { (void)access.Read(160); }).first, ExitStatus::kNoUnit);
}

}  // namespace
}  // namespace kalde2
