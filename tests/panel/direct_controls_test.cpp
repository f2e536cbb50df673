#include <gmock/gmock.h>

#include <QLabel>
#include <QProgressBar>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;
using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kRefresh = "refresh";

/// An open panel with all views shown. The unit refuses what is sent, so that everything that is
/// recorded or refreshed is the controls' own doing.
class DirectControlsTest : public PanelFixture {
 protected:
  void SetUp() override {
    StartAndOpen(32);
    Choose("mnu_function_advanced");
    Choose("mnu_function_aspect");
    Settle();
    port.on_write = [](std::string_view) { return std::string("F0000\r"); };
  }

  void Settle() {
    (void)Written();
    Form().tmr_updatelstCommands->stop();
  }

  /// What has been sent since the last call, and at the end whether the list is to be refreshed.
  [[nodiscard]] Frames Take() {
    Frames outcome = port.written;
    if (Form().tmr_updatelstCommands->isActive()) outcome.emplace_back(kRefresh);
    Settle();
    return outcome;
  }
};

enum PadArrow { kLeft, kUp, kRight, kDown };

TEST_F(DirectControlsTest, ASliderSendsAndRecordsItsValueAsItIs) {
  constexpr std::pair<const char*, int> kRows[] = {
      {"slide_shrink", 135}, {"slide_shrinkv", 262}, {"slide_softu", 291}, {"slide_softv", 293},
      {"slide_softy", 289},  {"slide_umax", 179},    {"slide_umin", 176},  {"slide_vmax", 180},
      {"slide_vmin", 177},   {"slide_ymax", 178},    {"slide_ymin", 175},  {"slide_zoomv", 261},
      {"slide_zoom", 134}};
  Press("chk_shrinkenable");
  for (const auto& [name, address] : kRows) {
    Key(name, Qt::Key_Home);
    Settle();
    Key(name, Qt::Key_Right);
    const int value = Form().Slider(name)->Value();
    EXPECT_EQ(Take(), (Frames{WriteOf(address, value), kRefresh})) << name;
    EXPECT_EQ(Recorded(address), value) << name;
  }
  Key("slide_zoom", Qt::Key_Home);
  EXPECT_EQ(Take(), (Frames{"F04104100860000643F\r", kRefresh}));
}

TEST_F(DirectControlsTest, APadSendsOneAxisAStep) {
  constexpr std::tuple<const char*, int, int> kRows[] = {{"arr_zoompan", 159, 160},
                                                         {"arr_shrinkposn", 218, 219}};
  for (const auto& [name, horizontal, vertical] : kRows) {
    SCOPED_TRACE(name);
    const auto step = [&, pad = name](int arrow) {
      const auto part = QStringLiteral("pic_arrow_%1").arg(arrow);
      QTest::mouseClick(Find<ArrowControl>(pad)->findChild<QWidget*>(part), Qt::LeftButton);
      return Take();
    };
    EXPECT_EQ(step(kRight), (Frames{WriteOf(horizontal, 1), kRefresh}));
    EXPECT_EQ(step(kDown), (Frames{WriteOf(vertical, 1), kRefresh}));
    EXPECT_TRUE(Recorded(horizontal) == 1 && Recorded(vertical) == 1);

    Find<ArrowControl>(name)->setValueY(40);
    EXPECT_EQ(step(kRight), (Frames{WriteOf(horizontal, 2), kRefresh})) << "horizontal wins";
    EXPECT_EQ(step(kUp), (Frames{WriteOf(vertical, 39), kRefresh}));
    for (const int value : {1, 0}) {
      EXPECT_EQ(step(kLeft), (Frames{WriteOf(horizontal, value), kRefresh}));
    }
    EXPECT_EQ(step(kLeft), Frames{kRefresh}) << "at its limit with both axes as recorded";
  }
  EXPECT_EQ(Find<ArrowControl>("arr_zoompan")->RepeatInterval(), 500);
}

TEST_F(DirectControlsTest, CheckBoxesSendOneAndNoughtAndEnableTheirSliders) {
  constexpr std::tuple<const char*, int, const char*> kRows[] = {
      {"chk_keyenable", 295, ""},
      {"chk_swapforback", 324, ""},
      {"chk_shrinkenable", 398, "slide_shrink"},
      {"chk_zoomenable", 0, "slide_zoom"}};  // the unit has no such parameter
  for (const auto& [name, address, slider] : kRows) {
    SCOPED_TRACE(name);
    for (int press = 0; press < 2; ++press) {
      press == 0 ? Press(name) : Key(name, Qt::Key_Space);
      const int checked = Find<QCheckBox>(name)->isChecked() ? 1 : 0;
      EXPECT_EQ(Take(), (address == 0 ? Frames{} : Frames{WriteOf(address, checked), kRefresh}));
      EXPECT_EQ(address == 0 ? checked : Recorded(address), checked);
      if (*slider == '\0') continue;
      EXPECT_EQ(Form().Slider(slider)->isEnabled(), checked == 1);
      EXPECT_EQ(Form().Slider((std::string(slider) + "v").c_str())->isEnabled(), checked == 1);
    }
  }
}

TEST_F(DirectControlsTest, ListsSendWhatIsChosenAndRecordNothing) {
  const std::int32_t recorded = Recorded(130);
  Key("cbo_program", Qt::Key_End);
  EXPECT_EQ(Take(), (Frames{WriteOf(130, 80), WriteOf(278, 80), kRefresh}));
  EXPECT_EQ(Recorded(130), recorded);

  Key("cbo_lock", Qt::Key_Down);
  EXPECT_EQ(Take(), (Frames{WriteOf(329, 17), kRefresh}));

  Form().cbo_resolution->setItemData(2, 77);
  Form().cbo_resolution->setCurrentIndex(1);
  Key("cbo_resolution", Qt::Key_Down);
  // On the line a resolution is one more than its place in the list.
  EXPECT_EQ(Take(), (Frames{WriteOf(131, 3), kRefresh}));
}

TEST_F(DirectControlsTest, LockModesShowTheirSourceUnlessOff) {
  constexpr std::tuple<const char*, int, bool> kRows[] = {
      {"opt_lockmix", 2, true}, {"opt_lockoff", 0, false}, {"opt_lockgenlock", 1, true}};
  for (const auto& [name, value, has_source] : kRows) {
    Press(name);
    EXPECT_EQ(Take(), (Frames{WriteOf(266, value), kRefresh})) << name;
    EXPECT_EQ(Recorded(266), value) << name;
    EXPECT_EQ(Form().cbo_lock->isVisible(), has_source) << name;
    EXPECT_EQ(Form().lbl_locksource->isVisible(), has_source) << name;
  }
}

TEST_F(DirectControlsTest, FadeTogglesAndDoesNotRefresh) {
  Press("cmd_fade");
  EXPECT_EQ(Take(), Frames{WriteOf(403, 1)});
  Key("cmd_fade", Qt::Key_Space);
  EXPECT_EQ(Take(), Frames{WriteOf(403, -1)});
  EXPECT_EQ(Recorded(403), -1);
}

TEST_F(DirectControlsTest, BlackSetsNineLimitsAndNoSliderSendsOfItsOwn) {
  constexpr std::tuple<const char*, int, int> kRows[] = {
      {"slide_ymin", 175, 0},   {"slide_ymax", 178, 32},  {"slide_umin", 176, 120},
      {"slide_umax", 179, 134}, {"slide_vmin", 177, 120}, {"slide_vmax", 180, 134},
      {"slide_softy", 289, 0},  {"slide_softu", 291, 0},  {"slide_softv", 293, 0}};
  Frames expected;
  for (const auto& [name, address, value] : kRows) {
    Key(name, Qt::Key_End);
    expected.push_back(WriteOf(address, value));
  }
  expected.emplace_back(kRefresh);
  Settle();
  Press("cmd_black");
  EXPECT_EQ(Take(), expected);
  for (const auto& [name, address, value] : kRows) {
    EXPECT_EQ(Find<cpvSlider>(name)->Value(), value) << name;
    EXPECT_EQ(Recorded(address), value) << name;
  }
}

TEST_F(DirectControlsTest, OverscanSendsAHundredAndRecordsNinety) {
  constexpr std::pair<const char*, int> kRows[] = {{"cmd_overscan", 100}, {"cmd_underscan", 90}};
  for (const auto& [name, percent] : kRows) {
    Press(name);
    EXPECT_EQ(Take(), (Frames{WriteOf(135, percent), WriteOf(398, 1), WriteOf(218, 50),
                              WriteOf(219, 50), kRefresh}))
        << name;
    EXPECT_EQ(Find<cpvSlider>("slide_shrink")->Value(), percent) << name;
    EXPECT_EQ(Recorded(135), 90) << name;
    EXPECT_TRUE(Recorded(218) == 50 && Recorded(219) == 50);
    EXPECT_EQ(Recorded(398), 0) << "only sent";
  }
}

TEST_F(DirectControlsTest, StoreAndResetAskFirst) {
  const std::tuple<const char*, int, const char*, const char*> rows[] = {
      {"cmd_function_strore", 200, "Store", "Store settings in units non volatile memory"},
      {"mnu_function_reset", 241, "Reset",
       "Reset the unit to default condition - clears non-volatile memory"}};
  for (const auto& [item, address, title, prompt] : rows) {
    for (const bool ok : {true, false}) {
      boxes.answer = ok;
      Choose(item);
      EXPECT_EQ(Take(), (ok ? Frames{WriteOf(address, 1)} : Frames{})) << item;
      EXPECT_THAT(std::exchange(boxes.confirmations, {}),
                  ElementsAre(FakeBoxes::Box{prompt, BoxIcon::kNone, title}));
    }
  }
}

/// Autoset against a unit in good or bad order. What the progress window shows is noted at every
/// sleep, for nothing else is drawn then.
class AutosetTest : public PanelFixture {
 protected:
  void SetUp() override {
    OpenSettled(32);
    clock.sleeps.clear();
    clock.on_sleep = [this] {
      const auto* const bar = panel->Progress().findChild<QProgressBar*>("ProgressBar");
      seen += panel->Progress().isVisible() ? "" : "hidden ";
      seen += panel->Progress().findChild<QLabel*>("lbl_progress")->text().left(1).toStdString();
      seen += std::to_string(bar->value()) + "/" + std::to_string(bar->maximum()) + " ";
    };
  }

  /// Runs autoset. @return how many requests came, and of them the reads of each parameter
  [[nodiscard]] std::string Run() {
    Press("cmd_autoset");
    EXPECT_FALSE(panel->Progress().isVisible());
    EXPECT_THAT(boxes.shown, IsEmpty());
    const Frames frames = Written();
    EXPECT_EQ(frames.at(0), WriteOf(254, 1));
    std::string brief = std::to_string(frames.size() - 1) + ":";
    for (const int address : {254, 182, 183, 222, 223, 145}) {
      brief += " " + std::to_string(std::ranges::count(frames, ReadOf(address)));
    }
    return brief;
  }

  std::string seen;
};

TEST_F(AutosetTest, ReadsTheAdjustmentsOfAUnitThatFinishes) {
  constexpr milliseconds kSecond(1000);
  EXPECT_EQ(Run(), "9: 4 1 1 1 1 1");
  EXPECT_EQ(seen, "W0/21 W0/21 W0/21 W1/21 A2/21 ");
  EXPECT_THAT(clock.sleeps, ElementsAre(kSecond, kSecond, kSecond, kSecond, 2 * kSecond));
  EXPECT_EQ(Recorded(145), unit->Value(145, 16));
  EXPECT_NE(unit->Value(145, 16), 0);
}

TEST_F(AutosetTest, GivesUpAfterTwentyOneRounds) {
  ConnectUnit({.product_type = 32, .autoset_reads = 1000});
  EXPECT_EQ(Run(), "26: 21 1 1 1 1 1");
  EXPECT_EQ(clock.sleeps.size(), 23U);
  EXPECT_TRUE(seen.ends_with("W18/21 W19/21 A20/21 ")) << seen;

  ASSERT_FALSE(unit->Faults().Add("refuse=254"));
  EXPECT_EQ(Run(), "26: 21 1 1 1 1 1") << "a unit that refuses to tell is not finished";
}

TEST_F(AutosetTest, ADeadUnitCountsAsFinished) {
  ASSERT_FALSE(unit->Faults().Add("ignore=254"));
  EXPECT_EQ(Run(), "10: 3 1 1 1 1 1");
  EXPECT_EQ(seen, "W0/21 A0/21 ");
}

}  // namespace
}  // namespace kalde2
