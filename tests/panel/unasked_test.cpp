#include <algorithm>
#include <set>
#include <tuple>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

class UnaskedFrames : public PanelFixture {
 protected:
  /// What arrives in one receive event.
  void Arrive(std::string_view characters) {
    port.Receive(characters);
    Window().MSComm1_OnComm();
  }

  [[nodiscard]] std::string Changed(int address, std::int32_t value) {
    return unit->ChangeAtFrontPanel(address, 16, value);
  }

  [[nodiscard]] bool RefreshAsked() { return Form().tmr_updatelstCommands->isActive(); }
  [[nodiscard]] bool Cutting() { return Form().TmrProcessMessage->isActive(); }

  [[nodiscard]] int LockMode() {
    const auto& modes = Form().opt_lock;
    return static_cast<int>(std::ranges::find_if(modes, &QRadioButton::isChecked) - modes.begin());
  }
};

TEST_F(UnaskedFrames, MoveEveryTaggedControlAndSendNothing) {
  OpenSettled();
  struct Case {
    int address;
    std::int32_t value;
    const char* control;
    int shown;
    const char* property = "Value";
  };
  const Case cases[] = {
      {130, 48, "cbo_program", 2, "currentIndex"},
      {130, 99, "cbo_program", 0, "currentIndex"},
      {329, 80, "cbo_lock", 4, "currentIndex"},
      {131, 7, "cbo_resolution", 7, "currentIndex"},
      {159, 30, "arr_zoompan", 30, "valueX"},
      {160, 31, "arr_zoompan", 31, "valueY"},
      {218, 32, "arr_shrinkposn", 32, "valueX"},
      {219, 33, "arr_shrinkposn", 33, "valueY"},
      {295, 1, "chk_keyenable", 1, "checked"},
      {324, 2, "chk_swapforback", 1, "checked"},
      {398, 1, "chk_shrinkenable", 1, "checked"},
      {398, 0, "chk_shrinkenable", 0, "checked"},
      {259, 200, "slide_zoom", 200},
      {134, 300, "slide_zoom", 300},
      {261, 400, "slide_zoomv", 400},
      {260, 50, "slide_shrink", 50},
      {135, 60, "slide_shrink", 60},
      {135, 1000, "slide_shrink", 100},
      {262, 70, "slide_shrinkv", 70},
      {262, 5, "slide_shrinkv", 10},
      {175, 1, "slide_ymin", 1},
      {176, 2, "slide_umin", 2},
      {177, 3, "slide_vmin", 3},
      {178, 4, "slide_ymax", 4},
      {179, 5, "slide_umax", 5},
      {180, 6, "slide_vmax", 6},
      {289, 7, "slide_softy", 7},
      {291, 8, "slide_softu", 8},
      {293, 9, "slide_softv", 9},
      {293, 300, "slide_softv", 255},
  };
  std::set<const QWidget*> moved;
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.address) + " " + row.control);
    auto* const control = Find<QWidget>(row.control);
    moved.insert(control);
    Unasked(Changed(row.address, row.value));
    EXPECT_EQ(control->property(row.property).toInt(), row.shown);
    EXPECT_EQ(Recorded(row.address), row.value);
    EXPECT_TRUE(Tick("tmr_updatelstCommands")) << "asks for a refresh";
  }
  for (const QWidget* const control : Window().findChildren<QWidget*>()) {
    EXPECT_TRUE(control->property("Tag").toString().isEmpty() || moved.contains(control))
        << control->objectName().toStdString() << " is left out above";
  }
  EXPECT_FALSE(Form().Slider("slide_shrink")->isEnabled());
  // The overall scales stand in for the horizontal ones, in the store as well.
  EXPECT_EQ(panel->Unit().values.ParamValue(129), 300);
  EXPECT_EQ(panel->Unit().values.ParamValue(130), 1000);
  // What the test button feeds in: mix and shrink enable.
  Form().cmd_test->click();
  EXPECT_EQ(LockMode(), 2);
  EXPECT_TRUE(Form().Slider("slide_shrink")->isEnabled());
  EXPECT_TRUE(Written().empty());
}

TEST_F(UnaskedFrames, LockModeAndAspectChangeTheForm) {
  OpenSettled();
  for (const auto& [value, mode, source_shown] :
       {std::tuple{1, 1, true}, {0, 0, false}, {2, 2, true}, {3, 3, true}, {0, 0, false}}) {
    Unasked(Changed(266, value));
    EXPECT_EQ(LockMode(), mode);
    EXPECT_EQ(Form().cbo_lock->isVisible(), source_shown) << value;
  }
  for (const bool advanced : {true, false}) {
    Unasked(Changed(258, advanced ? 1 : 0));
    EXPECT_EQ(Form().mnu_function_aspect->isChecked(), advanced);
    for (const char* const name : {"lbl_shrinkv", "slide_shrinkv", "lbl_zoomv", "slide_zoomv"}) {
      EXPECT_EQ(Find<QWidget>(name)->isHidden(), !advanced) << name;
    }
  }
}

TEST_F(UnaskedFrames, ValueThatAListDoesNotHaveAsksForNoRefresh) {
  OpenSettled(22);  // offers no lock source
  for (const auto& [address, value] : {std::pair{329, 16}, {131, 106}, {131, -2}}) {
    Unasked(Changed(address, value));
    EXPECT_FALSE(RefreshAsked()) << address << " " << value;
    EXPECT_EQ(Recorded(address), value);
  }
  Unasked(Changed(131, -1));
  EXPECT_TRUE(RefreshAsked());
  EXPECT_EQ(Form().cbo_resolution->currentIndex(), -1);
}

TEST_F(UnaskedFrames, AreCutFromPiecesOneATick) {
  OpenSettled();
  const std::string pan = Changed(159, 40);
  const std::string zoom = Changed(259, 500);
  const std::string key = Changed(175, 9);
  EXPECT_FALSE(Cutting());
  Arrive(pan.substr(0, 5));
  EXPECT_TRUE(Cutting());
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().arr_zoompan->valueX(), 0);
  Arrive("");
  Arrive(pan.substr(5) + zoom + "\x11junk" + key);
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().arr_zoompan->valueX(), 40);
  EXPECT_EQ(Form().Slider("slide_zoom")->Value(), 100);
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Slider("slide_zoom")->Value(), 500);
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Slider("slide_ymin")->Value(), 9);
  EXPECT_FALSE(Cutting());
}

TEST_F(UnaskedFrames, AreLeftInThePortWhileATransactionOwnsIt) {
  OpenSettled();
  ASSERT_EQ(unit->Faults().Add("silent"), std::nullopt);
  Form().chk_keyenable->click();
  Arrive(Changed(159, 40));
  EXPECT_FALSE(Cutting());
  unit->Faults().Clear();
  Form().chk_keyenable->click();
  Arrive(Changed(160, 41));
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().arr_zoompan->valueX(), 0);  // thrown away by the transaction
  EXPECT_EQ(Form().arr_zoompan->valueY(), 41);
  EXPECT_FALSE(Form().chk_keyenable->isChecked());
}

TEST_F(UnaskedFrames, AreNotAppliedAfterAFailedDetectionNorReadFromAClosedPort) {
  OpenSettled();
  Arrive(Changed(159, 40));
  Press("Cmd_openclose");
  EXPECT_FALSE(Cutting());
  Arrive(Changed(159, 41));
  EXPECT_FALSE(Cutting());
  ASSERT_EQ(unit->Faults().Add("silent"), std::nullopt);
  Press("Cmd_openclose");
  panel->Link().ParseReply(Changed(159, 42));
  EXPECT_EQ(Form().arr_zoompan->valueX(), 0);
  EXPECT_FALSE(RefreshAsked());
}

}  // namespace
}  // namespace kalde2
