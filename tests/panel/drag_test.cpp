#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;
using std::chrono::milliseconds;

constexpr int kLatency = 100;

/// An open panel with a unit that answers 100 ms late, and the handle of a slider.
class Drag : public PanelFixture {
 protected:
  void SetUp() override {
    StartAndOpen(32);
    ASSERT_FALSE(unit->Faults().Add("late=" + std::to_string(kLatency)));
    (void)Written();
    zoom = Form().Slider("slide_zoom");
    handle = {zoom->height() / 2, zoom->height() / 2};
  }
  void TearDown() override { EXPECT_EQ(clock.deepest_wait, 1) << "waits never nest"; }

  cpvSlider* zoom = nullptr;
  QPoint handle;
};

TEST_F(Drag, ADragEndsOnItsLastValueWithNothingSentTwice) {
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

TEST_F(Drag, AHeldSliderEndsOnWhatTheUnitMadeOfIt) {
  // A unit that limits the zoom to 150.
  port.on_write = [this](std::string_view) {
    clock.After(milliseconds(kLatency),
                [this] { port.Receive(WriteOf(134, 150).replace(1, 2, "44")); });
    return std::string();
  };
  QTest::mousePress(zoom, Qt::LeftButton, {}, handle);
  QTest::mouseMove(zoom, handle + QPoint(60, 0));
  EXPECT_GT(zoom->Value(), 150);
  QTest::mouseRelease(zoom, Qt::LeftButton, {}, handle + QPoint(60, 0));
  EXPECT_EQ(zoom->Value(), 150);
  EXPECT_EQ(Written().size(), 1U);
}

}  // namespace
}  // namespace kalde2
