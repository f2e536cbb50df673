#include <gmock/gmock.h>

#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;
using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kLatency = 100;

/// An open panel with a unit that answers 100 ms late, so that what the operator does `During` the
/// waits falls into the transaction of what he did first.
class OperatorQueueTest : public PanelFixture {
 protected:
  void SetUp() override {
    StartAndOpen(32);
    ASSERT_FALSE(unit->Faults().Add("late=" + std::to_string(kLatency)));
    Form().tmr_updatelstCommands->stop();
    (void)Written();
  }
  void TearDown() override { EXPECT_EQ(clock.deepest_wait, 1) << "waits never nest"; }

  /// Does something in the wait for reply number `reply` (from 0) of those still to come.
  void During(int reply, std::function<void()> act) {
    clock.After(milliseconds(reply * kLatency + kLatency / 2), std::move(act));
  }
};

TEST_F(OperatorQueueTest, ADragEndsOnItsLastValueWithNothingSentTwice) {
  cpvSlider* const zoom = Form().Slider("slide_zoom");
  const QPoint handle(zoom->height() / 2, zoom->height() / 2);
  constexpr int kMoves = 40;
  constexpr int kInterval = 15;
  int last = 0;
  for (int i = 1; i <= kMoves; ++i) {
    clock.After(milliseconds(kInterval * i), [&, i] {
      EXPECT_TRUE(last == 0 || last == zoom->Value()) << "an echo moved it under the hand";
      QTest::mouseMove(zoom, handle + QPoint(3 + 3 * i, 0));
      last = zoom->Value();
    });
  }
  QTest::mousePress(zoom, Qt::LeftButton, {}, handle);
  QTest::mouseMove(zoom, handle + QPoint(3, 0));
  const Frames frames = Written();
  EXPECT_LT(frames.size(), static_cast<std::size_t>(kMoves));
  EXPECT_EQ(std::set(frames.begin(), frames.end()).size(), frames.size());
  EXPECT_EQ(frames.back(), WriteOf(134, last));
}

TEST_F(OperatorQueueTest, SendsTheNewestOfEachInOrderOfFirstChange) {
  During(0, [this] {
    Key("slide_zoom", Qt::Key_End);
    Press("chk_keyenable");
    Choose("cmd_function_strore");
    Key("cbo_program", Qt::Key_End);
    Key("slide_zoom", Qt::Key_PageDown);
    Press("chk_keyenable");
    Key("slide_zoom", Qt::Key_Left);
    EXPECT_THAT(boxes.confirmations, IsEmpty()) << "asked when its turn comes";
  });
  Press("cmd_fade");
  const int zoom = Form().Slider("slide_zoom")->Value();
  EXPECT_THAT(Written(), ElementsAre(WriteOf(403, 1), WriteOf(134, zoom), WriteOf(295, 0),
                                     WriteOf(200, 1), WriteOf(130, 80), WriteOf(278, 80)));
  EXPECT_EQ(boxes.confirmations.size(), 1U);
}

TEST_F(OperatorQueueTest, ButtonsOfOneSettingEndOnTheOnePressedLast) {
  During(0, [this] {
    for (const char* mode : {"opt_lockoff", "opt_lockmix", "opt_lockoff"}) Press(mode);
    for (const char* button : {"cmd_overscan", "cmd_underscan", "cmd_overscan"}) Press(button);
  });
  Press("opt_lockgenlock");
  EXPECT_THAT(Written(), ElementsAre(WriteOf(266, 1), WriteOf(266, 0), WriteOf(135, 100),
                                     WriteOf(398, 1), WriteOf(218, 50), WriteOf(219, 50)));
  EXPECT_TRUE(Form().opt_lock[0]->isChecked());
  EXPECT_FALSE(Form().cbo_lock->isVisible());
}

TEST_F(OperatorQueueTest, RelativeStepsCountFromTheNewestWish) {
  SelectLine("Zoom Pan H");
  const auto plus = [this] { Press("cmd_commandplus"); };
  // The echo of the first step comes before the second is sent and the third pressed.
  During(0, [&] {
    Press("cmd_fade");
    plus();
  });
  During(1, plus);
  plus();
  EXPECT_THAT(Written(), ElementsAre(WriteOf(159, 1), WriteOf(403, 1), WriteOf(159, 3)));
  EXPECT_EQ(Recorded(159), 3);
  EXPECT_EQ(Form().txt_commandval->text(), "3");

  for (const int reply : {0, 1}) During(reply, [this] { Press("cmd_fade"); });
  Press("cmd_fade");
  EXPECT_THAT(Written(), ElementsAre(WriteOf(403, -1), WriteOf(403, 1), WriteOf(403, -1)));
}

TEST_F(OperatorQueueTest, AnEchoMovesNoControlWithANewerChange) {
  During(0, [this] { Press("cmd_fade"); });
  // In the wait of fade, ahead of everything below, older values of all of them arrive.
  During(0, [this] {
    Key("slide_zoom", Qt::Key_End);
    Press("chk_keyenable");
    Key("cbo_program", Qt::Key_End);
    Press("opt_lockmix");
    for (const auto& [address, value] : {std::pair{134, 150}, {295, 0}, {130, 16}, {266, 0}}) {
      std::string frame = WriteOf(address, value);
      panel->UnitSession().Link().ParseReply(frame.replace(1, 2, "44"));
    }
    EXPECT_EQ(Form().Slider("slide_zoom")->Value(), 1000);
    EXPECT_TRUE(Form().Check("chk_keyenable")->isChecked() && Form().opt_lock[2]->isChecked());
    EXPECT_EQ(Form().cbo_program->currentIndex(), 4);
  });
  Press("cmd_black");
}

/// A frame of the unit, as it comes while something else is under way.
std::string Told(int address, int value) {
  return PanelFixture::WriteOf(address, value).replace(1, 2, "44");
}

TEST_F(OperatorQueueTest, AHeldPadFollowsAndStepsFromWhatTheUnitSays) {
  ArrowControl& pad = *Form().Pad("arr_zoompan");
  QTest::mousePress(Find<QWidget>("pic_arrow_2"), Qt::LeftButton);
  panel->UnitSession().Link().ParseReply(Told(160, 70));
  EXPECT_EQ(pad.valueY(), 70);
  // A unit that limits the pan to 4.
  port.on_write = [](std::string_view) { return Told(159, 4); };
  Tick("tmr_repeat");
  EXPECT_EQ(pad.valueX(), 4) << "at once";
  panel->UnitSession().Link().ParseReply(Told(159, 6));
  QTest::mouseRelease(Find<QWidget>("pic_arrow_2"), Qt::LeftButton);
  QTest::mouseClick(Find<QWidget>("pic_arrow_3"), Qt::LeftButton);
  EXPECT_THAT(Written(), ElementsAre(WriteOf(159, 1), WriteOf(159, 6), WriteOf(160, 71)));
}

TEST_F(OperatorQueueTest, AnAxisOnItsWayIsNoChangeOfTheOther) {
  const auto step = [this](Qt::Key key) { return [this, key] { Key("arr_zoompan", key); }; };
  During(0, [&] {
    step(Qt::Key_Down)();
    step(Qt::Key_Right)();
    panel->UnitSession().Link().ParseReply(
        Told(159, 1));  // the echo of the first, ahead of all that waits
    EXPECT_EQ(Form().Pad("arr_zoompan")->valueX(), 2);
    step(Qt::Key_Down)();
  });
  step(Qt::Key_Right)();
  EXPECT_THAT(Written(), ElementsAre(WriteOf(159, 1), WriteOf(160, 2), WriteOf(159, 2)));

  During(0, step(Qt::Key_Left));
  step(Qt::Key_Right)();
  EXPECT_THAT(Written(), ElementsAre(WriteOf(159, 3), WriteOf(159, 2))) << "there and back";
}

TEST_F(OperatorQueueTest, AGroupThatWaitsKeepsItsControlsFromOlderReplies) {
  During(0, [this] {
    Press("cmd_black");
    Press("cmd_underscan");
    for (const auto& [address, value] :
         {std::pair{178, 200}, {293, 9}, {135, 77}, {218, 5}, {219, 6}}) {
      panel->UnitSession().Link().ParseReply(Told(address, value));
    }
    EXPECT_EQ(Form().Slider("slide_ymax")->Value(), 32);
    EXPECT_EQ(Form().Slider("slide_softv")->Value(), 0);
    EXPECT_EQ(Form().Slider("slide_shrink")->Value(), 90);
    EXPECT_EQ(Form().Pad("arr_shrinkposn")->valueX(), 50);
    EXPECT_EQ(Form().Pad("arr_shrinkposn")->valueY(), 50);
  });
  Press("cmd_fade");
  EXPECT_EQ(Written().size(), 1U + 9U + 4U);
}

TEST_F(OperatorQueueTest, AHeldSliderEndsOnWhatTheUnitMadeOfIt) {
  cpvSlider* const zoom = Form().Slider("slide_zoom");
  const QPoint handle(zoom->height() / 2, zoom->height() / 2);
  // A unit that limits the zoom to 150.
  port.on_write = [this](std::string_view) {
    clock.After(milliseconds(kLatency), [this] { port.Receive(Told(134, 150)); });
    return std::string();
  };
  QTest::mousePress(zoom, Qt::LeftButton, {}, handle);
  QTest::mouseMove(zoom, handle + QPoint(60, 0));
  EXPECT_GT(zoom->Value(), 150);
  QTest::mouseRelease(zoom, Qt::LeftButton, {}, handle + QPoint(60, 0));
  EXPECT_EQ(zoom->Value(), 150);
  EXPECT_EQ(Written().size(), 1U);
}

TEST_F(OperatorQueueTest, ClosingForgetsWhatWaits) {
  During(0, [this] {
    Choose("cmd_function_strore");
    Press("Cmd_openclose");
    Press("Cmd_openclose");
  });
  Press("cmd_fade");
  EXPECT_TRUE(port.open && boxes.confirmations.empty() && boxes.shown.empty());
}

}  // namespace
}  // namespace kalde2
