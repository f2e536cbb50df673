#include <QSignalSpy>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

class UnaskedFrames : public PanelFixture {
 protected:
  /// What arrives in one receive event.
  void Arrive(std::string_view characters) { port.Arrive(characters); }

  [[nodiscard]] std::string Changed(int address, std::int32_t value) {
    return unit->ChangeAtFrontPanel(address, 16, value);
  }

  [[nodiscard]] bool Cutting() { return Form().TmrProcessMessage->isActive(); }
};

TEST_F(UnaskedFrames, MoveControlsAsFarAsTheyGoAndSendNothing) {
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
      {130, 99, "cbo_program", 0, "currentIndex"},  // no such source
      {329, 80, "cbo_lock", 4, "currentIndex"},
      {324, 2, "chk_swapforback", 1, "checked"},
      {398, 0, "chk_shrinkenable", 0, "checked"},
      {259, 200, "slide_zoom", 200},
      {134, 300, "slide_zoom", 300},
      {260, 50, "slide_shrink", 50},
      {135, 1000, "slide_shrink", 100},
      {293, 300, "slide_softv", 255},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.address) + " " + row.control);
    Unasked(Changed(row.address, row.value));
    EXPECT_EQ(Find<QWidget>(row.control)->property(row.property).toInt(), row.shown);
    EXPECT_EQ(Recorded(row.address), row.value);
    EXPECT_TRUE(Tick("tmr_updatelstCommands")) << "asks for a refresh";
  }
  EXPECT_FALSE(Form().Slider("slide_shrink")->isEnabled());
  // The overall scales stand in for the horizontal ones, in the store as well.
  EXPECT_EQ(panel->UnitSession().Unit().values.ParamValue(129), 300);
  EXPECT_EQ(panel->UnitSession().Unit().values.ParamValue(130), 1000);
  EXPECT_TRUE(Written().empty());
}

TEST_F(UnaskedFrames, APositionThatAListDoesNotHaveLeavesItAndAsksForNoRefresh) {
  OpenSettled();
  Unasked(Changed(131, 4));
  EXPECT_TRUE(Tick("tmr_updatelstCommands"));
  const QSignalSpy changed(Form().cbo_resolution, &QComboBox::currentIndexChanged);
  Unasked(Changed(131, 300));
  EXPECT_EQ(Form().cbo_resolution->currentIndex(), 4);
  EXPECT_EQ(changed.count(), 0);
  EXPECT_FALSE(panel->UnitSession().Link().LastReply().Valid ||
               Form().tmr_updatelstCommands->isActive());
}

TEST_F(UnaskedFrames, LockModeAndAspectChangeTheForm) {
  OpenSettled();
  for (const int value : {1, 0, 2, 3}) {
    Unasked(Changed(266, value));
    EXPECT_EQ(Form().opt_lock[0]->isChecked(), value == 0);
    EXPECT_EQ(Form().opt_lock[2]->isChecked(), value == 2);
    EXPECT_EQ(Form().cbo_lock->isVisible(), value != 0) << value;
  }
  for (const int advanced : {1, 0}) {
    Unasked(Changed(258, advanced));
    EXPECT_EQ(Form().mnu_function_aspect->isChecked(), advanced == 1);
    EXPECT_EQ(Form().Slider("slide_shrinkv")->isHidden(), advanced == 0);
    EXPECT_EQ(Form().Slider("slide_zoomv")->isHidden(), advanced == 0);
  }
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
  EXPECT_EQ(Form().Pad("arr_zoompan")->valueX(), 0);
  Arrive("");
  Arrive(pan.substr(5) + zoom + "\x11junk" + key);
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Pad("arr_zoompan")->valueX(), 40);
  EXPECT_EQ(Form().Slider("slide_zoom")->Value(), 100);
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Slider("slide_zoom")->Value(), 500);
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Slider("slide_ymin")->Value(), 9);
  EXPECT_FALSE(Cutting());
}

TEST_F(UnaskedFrames, OfTheUnitBeforeAreShownUntilTheNextOpeningOnly) {
  OpenSettled();
  const std::string pan = Changed(159, 77);
  const std::string position = Changed(218, 66);
  Arrive(pan + position);
  Press("Cmd_openclose");
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Pad("arr_zoompan")->valueX(), 77);
  Press("Cmd_openclose");
  EXPECT_FALSE(Cutting());
  EXPECT_EQ(Form().Pad("arr_shrinkposn")->valueX(), 0);
  Arrive(Changed(160, 55));
  Tick("TmrProcessMessage");
  EXPECT_EQ(Form().Pad("arr_zoompan")->valueY(), 55);
  EXPECT_EQ(Form().Pad("arr_shrinkposn")->valueX(), 0);
}

}  // namespace
}  // namespace kalde2
