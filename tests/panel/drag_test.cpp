#include <set>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;
using Drag = PanelFixture;

TEST_F(Drag, EndsOnItsLastValueWithNothingSentTwice) {
  constexpr int kMoves = 40;
  constexpr milliseconds kInterval{15};
  StartAndOpen(32);
  ASSERT_FALSE(unit->Faults().Add("late=100"));
  (void)Written();
  cpvSlider& zoom = *Form().Slider("slide_zoom");
  const QPoint handle(zoom.height() / 2, zoom.height() / 2);
  int last = 0;
  for (int i = 1; i <= kMoves; ++i) {
    clock.After(kInterval * i, [&, i] {
      EXPECT_TRUE(last == 0 || last == zoom.Value()) << "an echo moved it under the hand";
      QTest::mouseMove(&zoom, handle + QPoint(3 + 3 * i, 0));
      last = zoom.Value();
    });
  }
  QTest::mousePress(&zoom, Qt::LeftButton, {}, handle);
  QTest::mouseMove(&zoom, handle + QPoint(3, 0));
  const std::vector<std::string> frames = Written();
  EXPECT_LT(frames.size(), static_cast<std::size_t>(kMoves));
  EXPECT_EQ(std::set(frames.begin(), frames.end()).size(), frames.size());
  EXPECT_EQ(frames.back(), WriteOf(134, last));
  EXPECT_EQ(clock.deepest_wait, 1) << "waits never nest";
}

}  // namespace
}  // namespace kalde2
