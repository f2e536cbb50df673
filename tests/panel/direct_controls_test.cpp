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

  /// What has been sent and whether the list is to be refreshed, since the last call.
  struct Outcome {
    Frames frames;
    bool refreshes;
    bool operator==(const Outcome&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
      for (const std::string& frame : outcome.frames) out << frame << ' ';
      return out << (outcome.refreshes ? "refresh" : "no refresh");
    }
  };
  [[nodiscard]] Outcome Take() {
    const Outcome outcome{port.written, Form().tmr_updatelstCommands->isActive()};
    Settle();
    return outcome;
  }

  [[nodiscard]] std::int32_t Recorded(int address) {
    return panel->Unit().values.GetParamValue(address - kFirstAddress);
  }

  QWidget* ArrowOf(const char* pad, int arrow) {
    return Find<ArrowControl>(pad)->findChild<QWidget*>(QStringLiteral("pic_arrow_%1").arg(arrow));
  }
  void Step(const char* pad, int arrow) { QTest::mouseClick(ArrowOf(pad, arrow), Qt::LeftButton); }
};

constexpr int kLeft = 0;
constexpr int kUp = 1;
constexpr int kRight = 2;
constexpr int kDown = 3;

TEST_F(DirectControlsTest, ASliderSendsAndRecordsItsValueAsItIs) {
  constexpr std::pair<const char*, int> kRows[] = {
      {"slide_shrink", 135}, {"slide_shrinkv", 262}, {"slide_softu", 291}, {"slide_softv", 293},
      {"slide_softy", 289},  {"slide_umax", 179},    {"slide_umin", 176},  {"slide_vmax", 180},
      {"slide_vmin", 177},   {"slide_ymax", 178},    {"slide_ymin", 175},  {"slide_zoom", 134},
      {"slide_zoomv", 261}};
  Press("chk_shrinkenable");
  for (const auto& [name, address] : kRows) {
    auto* const slider = Find<cpvSlider>(name);
    Key(name, slider->Value() == slider->max() ? Qt::Key_Home : Qt::Key_End);
    Settle();
    Key(name, slider->Value() == slider->max() ? Qt::Key_Left : Qt::Key_Right);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(address, slider->Value())}, true})) << name;
    EXPECT_EQ(Recorded(address), slider->Value()) << name;
  }
  Key("slide_zoom", Qt::Key_Home);
  EXPECT_EQ(Take().frames, Frames{"F04104100860000643F\r"});
}

TEST_F(DirectControlsTest, APadSendsOneAxisAStep) {
  constexpr std::tuple<const char*, int, int> kRows[] = {{"arr_zoompan", 159, 160},
                                                         {"arr_shrinkposn", 218, 219}};
  for (const auto& [name, horizontal, vertical] : kRows) {
    SCOPED_TRACE(name);
    auto* const pad = Find<ArrowControl>(name);
    Step(name, kRight);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(horizontal, 1)}, true}));
    Step(name, kDown);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(vertical, 1)}, true}));
    EXPECT_EQ(Recorded(horizontal), 1);
    EXPECT_EQ(Recorded(vertical), 1);

    pad->setValueY(40);
    Step(name, kRight);
    EXPECT_EQ(Take().frames, Frames{WriteOf(horizontal, 2)}) << "the horizontal axis wins";
    Step(name, kUp);
    EXPECT_EQ(Take().frames, Frames{WriteOf(vertical, 39)});

    Step(name, kLeft);
    Step(name, kLeft);
    Settle();
    Step(name, kLeft);
    EXPECT_EQ(Take(), (Outcome{{}, true})) << "at its limit with both axes as recorded";
    pad->setValueX(98);
    Key(name, Qt::Key_Right);
    Key(name, Qt::Key_Right);
    Key(name, Qt::Key_Right);
    EXPECT_EQ(Take().frames, (Frames{WriteOf(horizontal, 99), WriteOf(horizontal, 100)}));
  }
}

TEST_F(DirectControlsTest, AHeldArrowGoesOnByFiveEveryHalfSecond) {
  auto* const pad = Find<ArrowControl>("arr_zoompan");
  EXPECT_EQ(pad->RepeatInterval(), 500);
  QTest::mousePress(ArrowOf("arr_zoompan", kDown), Qt::RightButton);
  auto* const repeat = pad->findChild<QTimer*>("tmr_repeat");
  ASSERT_TRUE(repeat->isActive());
  QTimerEvent tick(repeat->timerId());
  QCoreApplication::sendEvent(repeat, &tick);
  QTest::mouseRelease(ArrowOf("arr_zoompan", kDown), Qt::RightButton);
  EXPECT_FALSE(repeat->isActive());
  EXPECT_EQ(Take().frames, (Frames{WriteOf(160, 1), WriteOf(160, 6)}));
}

TEST_F(DirectControlsTest, CheckBoxesSendOneAndNought) {
  constexpr std::pair<const char*, int> kRows[] = {
      {"chk_keyenable", 295}, {"chk_swapforback", 324}, {"chk_shrinkenable", 398}};
  for (const auto& [name, address] : kRows) {
    Press(name);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(address, 1)}, true})) << name;
    EXPECT_EQ(Recorded(address), 1) << name;
    Key(name, Qt::Key_Space);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(address, 0)}, true})) << name;
    EXPECT_EQ(Recorded(address), 0) << name;
  }
}

TEST_F(DirectControlsTest, EnablingShrinkAndZoomEnablesTheirSliders) {
  constexpr std::tuple<const char*, const char*, const char*> kRows[] = {
      {"chk_shrinkenable", "slide_shrink", "slide_shrinkv"},
      {"chk_zoomenable", "slide_zoom", "slide_zoomv"}};
  for (const auto& [name, slider, vertical] : kRows) {
    for (int press = 0; press < 2; ++press) {
      Press(name);
      const bool checked = Find<QCheckBox>(name)->isChecked();
      EXPECT_EQ(Find<cpvSlider>(slider)->isEnabled(), checked) << slider;
      EXPECT_EQ(Find<cpvSlider>(vertical)->isEnabled(), checked) << vertical;
    }
  }
  Settle();
  Press("chk_zoomenable");
  EXPECT_EQ(Take(), (Outcome{{}, false})) << "zoom has no such parameter";
}

TEST_F(DirectControlsTest, ListsSendWhatIsChosenAndRecordNothing) {
  const std::int32_t recorded = Recorded(130);
  Key("cbo_program", Qt::Key_End);
  const int source = Form().cbo_program->currentData().toInt();
  EXPECT_EQ(source, 80);
  EXPECT_EQ(Take(), (Outcome{{WriteOf(130, source), WriteOf(278, source)}, true}));
  EXPECT_EQ(Recorded(130), recorded);

  Key("cbo_lock", Qt::Key_Down);
  const int lock = Form().cbo_lock->itemData(1).toInt();
  EXPECT_EQ(Take(), (Outcome{{WriteOf(329, lock)}, true}));

  Form().cbo_resolution->setItemData(2, 77);
  Key("cbo_resolution", Qt::Key_Down);
  Settle();
  Key("cbo_resolution", Qt::Key_Down);
  // On the line a resolution is one more than its place in the list.
  EXPECT_EQ(Take(), (Outcome{{WriteOf(131, 3)}, true}));
}

TEST_F(DirectControlsTest, LockModesShowTheirSourceUnlessOff) {
  constexpr std::tuple<const char*, int, bool> kRows[] = {
      {"opt_lockmix", 2, true}, {"opt_lockoff", 0, false}, {"opt_lockgenlock", 1, true}};
  for (const auto& [name, value, has_source] : kRows) {
    Press(name);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(266, value)}, true})) << name;
    EXPECT_EQ(Recorded(266), value) << name;
    EXPECT_EQ(Form().cbo_lock->isVisible(), has_source) << name;
    EXPECT_EQ(Form().lbl_locksource->isVisible(), has_source) << name;
  }
  Key("opt_lockgenlock", Qt::Key_Left);
  if (!Form().opt_lock[0]->isChecked()) Key("opt_lockoff", Qt::Key_Space);
  EXPECT_EQ(Take().frames, Frames{WriteOf(266, 0)});
}

TEST_F(DirectControlsTest, FadeTogglesAndDoesNotRefresh) {
  Press("cmd_fade");
  EXPECT_EQ(Take(), (Outcome{{WriteOf(403, 1)}, false}));
  Key("cmd_fade", Qt::Key_Space);
  EXPECT_EQ(Take(), (Outcome{{WriteOf(403, -1)}, false}));
  EXPECT_EQ(Recorded(403), -1);
  Press("cmd_fade");
  EXPECT_EQ(Take().frames, Frames{WriteOf(403, 1)});
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
  Settle();
  Press("cmd_black");
  EXPECT_EQ(Take(), (Outcome{expected, true}));
  for (const auto& [name, address, value] : kRows) {
    EXPECT_EQ(Find<cpvSlider>(name)->Value(), value) << name;
    EXPECT_EQ(Recorded(address), value) << name;
  }
}

TEST_F(DirectControlsTest, OverscanSendsAHundredAndRecordsNinety) {
  constexpr std::pair<const char*, int> kRows[] = {{"cmd_overscan", 100}, {"cmd_underscan", 90}};
  for (const auto& [name, percent] : kRows) {
    Press(name);
    EXPECT_EQ(Take(),
              (Outcome{{WriteOf(135, percent), WriteOf(398, 1), WriteOf(218, 50), WriteOf(219, 50)},
                       true}))
        << name;
    EXPECT_EQ(Find<cpvSlider>("slide_shrink")->Value(), percent) << name;
    EXPECT_EQ(Recorded(135), 90) << name;
    EXPECT_EQ(Recorded(218), 50);
    EXPECT_EQ(Recorded(219), 50);
    EXPECT_EQ(Recorded(398), 0) << "only sent";
  }
}

TEST_F(DirectControlsTest, StoreAndResetAskFirst) {
  struct Row {
    const char* item;
    int address;
    FakeBoxes::Box box;
  };
  const Row rows[] = {{"cmd_function_strore",
                       200,
                       {"Store settings in units non volatile memory", BoxIcon::kNone, "Store"}},
                      {"mnu_function_reset",
                       241,
                       {"Reset the unit to default condition - clears non-volatile memory",
                        BoxIcon::kNone, "Reset"}}};
  for (const Row& row : rows) {
    boxes.answer = true;
    Choose(row.item);
    EXPECT_EQ(Take(), (Outcome{{WriteOf(row.address, 1)}, false})) << row.item;
    boxes.answer = false;
    Choose(row.item);
    EXPECT_EQ(Take(), (Outcome{{}, false})) << row.item;
    EXPECT_THAT(std::exchange(boxes.confirmations, {}), ElementsAre(row.box, row.box));
  }
}

TEST_F(DirectControlsTest, RepliesMoveEveryTaggedControlAndSendNothing) {
  struct Row {
    int address;
    int value;
    const char* control;
    const char* property;
    int shown;
  };
  constexpr Row kRows[] = {
      {134, 250, "slide_zoom", "Value", 250},      {135, 40, "slide_shrink", "Value", 40},
      {261, 999, "slide_zoomv", "Value", 999},     {262, 5, "slide_shrinkv", "Value", 10},
      {175, 9, "slide_ymin", "Value", 9},          {293, 300, "slide_softv", "Value", 255},
      {295, 1, "chk_keyenable", "checked", 1},     {398, 1, "chk_shrinkenable", "checked", 1},
      {324, 2, "chk_swapforback", "checked", 1},   {159, 33, "arr_zoompan", "valueX", 33},
      {219, 44, "arr_shrinkposn", "valueY", 44},   {131, 6, "cbo_resolution", "currentIndex", 5},
      {130, 80, "cbo_program", "currentIndex", 4}, {266, 2, "opt_lockmix", "checked", 1},
      {266, 0, "opt_lockoff", "checked", 1},
  };
  for (const Row& row : kRows) {
    std::string frame = WriteOf(row.address, row.value);
    frame.replace(1, 2, "44");
    Unasked(frame);
    EXPECT_EQ(Find<QWidget>(row.control)->property(row.property).toInt(), row.shown) << row.control;
  }
  EXPECT_TRUE(Find<cpvSlider>("slide_shrinkv")->isEnabled()) << "the check box has its effect";
  EXPECT_FALSE(Form().cbo_lock->isVisible()) << "and so has the option button";
  EXPECT_EQ(Take(), (Outcome{{}, true}));
}

/// Autoset against a unit in good or bad order. What the progress window shows is noted at every
/// sleep, for nothing else is drawn then.
class AutosetTest : public PanelFixture {
 protected:
  void SetUp() override {
    StartAndOpen(32);
    (void)Written();
    clock.sleeps.clear();
    clock.on_sleep = [this] {
      const auto& window = panel->Progress();
      seen += window.isVisible() ? "" : "hidden ";
      seen += window.findChild<QLabel*>("lbl_progress")->text().left(1).toStdString();
      seen += std::to_string(window.findChild<QProgressBar*>("ProgressBar")->value()) + " ";
      EXPECT_EQ(window.findChild<QProgressBar*>("ProgressBar")->maximum(), 21);
    };
  }

  [[nodiscard]] Frames Run() {
    Press("cmd_autoset");
    EXPECT_FALSE(panel->Progress().isVisible());
    EXPECT_THAT(boxes.shown, IsEmpty());
    return Written();
  }

  static Frames Adjustments(int times) {
    Frames frames;
    for (const int address : {182, 183, 222, 223, 145}) {
      frames.insert(frames.end(), static_cast<std::size_t>(times), ReadOf(address));
    }
    return frames;
  }

  static Frames Joined(Frames frames, int reads, const Frames& rest) {
    frames.insert(frames.end(), static_cast<std::size_t>(reads), ReadOf(254));
    frames.insert(frames.end(), rest.begin(), rest.end());
    return frames;
  }

  std::string seen;
};

TEST_F(AutosetTest, ReadsTheAdjustmentsOfAUnitThatFinishes) {
  EXPECT_EQ(Run(), Joined({WriteOf(254, 1)}, 4, Adjustments(1)));
  EXPECT_EQ(seen, "W0 W0 W0 W1 A2 ");
  EXPECT_THAT(clock.sleeps, ElementsAre(milliseconds(1000), milliseconds(1000), milliseconds(1000),
                                        milliseconds(1000), milliseconds(2000)));
  EXPECT_EQ(panel->Unit().values.GetParamValue(145 - kFirstAddress), unit->Value(145, 16));
  EXPECT_NE(unit->Value(145, 16), 0);
}

TEST_F(AutosetTest, GivesUpAfterTwentyOneRounds) {
  ConnectUnit({.product_type = 32, .autoset_reads = 1000});
  EXPECT_EQ(Run(), Joined({WriteOf(254, 1)}, 21, Adjustments(1)));
  EXPECT_EQ(clock.sleeps.size(), 23U);
  EXPECT_EQ(seen.substr(0, 12), "W0 W0 W0 W1 ");
  EXPECT_TRUE(seen.ends_with("W18 W19 A20 ")) << seen;
}

TEST_F(AutosetTest, ADeadUnitCountsAsFinished) {
  const auto answer = port.on_write;
  port.on_write = [&](std::string_view frame) {
    const std::string reply = answer(frame);
    return frame.substr(1, 2) == "04" ? reply : std::string();
  };
  EXPECT_EQ(Run(), Joined({WriteOf(254, 1)}, 3, Adjustments(3)));
  EXPECT_EQ(seen, "W0 A0 ");
}

TEST_F(AutosetTest, AUnitThatRefusesToTellIsNotFinished) {
  ASSERT_FALSE(unit->Faults().Add("refuse=254"));
  EXPECT_EQ(Run().size(), 1U + 21U + 5U);
}

TEST_F(AutosetTest, EndsWhereThePortIsClosed) {
  ASSERT_FALSE(unit->Faults().Add("late=100"));
  clock.After(milliseconds(1150), [this] { Press("Cmd_openclose"); });
  EXPECT_EQ(Run(), (Frames{WriteOf(254, 1), ReadOf(254)}));
  EXPECT_EQ(seen, "W0 ");
  EXPECT_EQ(Form().lbl_comstate->text(), "CLOSED");
}

TEST_F(AutosetTest, AClickInItsLastSleepDoesNothing) {
  constexpr milliseconds kInLastSleep(1000 + 3 * 1000 + 500);
  clock.After(kInLastSleep, [this] { Press("cmd_fade"); });
  (void)Run();
  clock.ServeEvents(milliseconds(1));
  EXPECT_THAT(Written(), IsEmpty()) << "what was clicked in a sleep comes after it";
}

}  // namespace
}  // namespace kalde2
