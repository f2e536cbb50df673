#include <tuple>

#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

using Frames = std::vector<std::string>;
using std::chrono::milliseconds;

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

  /// A key changes what a control shows, which is sent and recorded; then the unit changes it back.
  void ExpectSendsAndFollows(const char* name, int address, Qt::Key key, const char* property) {
    SCOPED_TRACE(name);
    const auto shown = [&] { return Find<QWidget>(name)->property(property).toInt(); };
    const int before = shown();
    Key(name, key);
    const int value = shown();
    EXPECT_NE(value, before);
    EXPECT_EQ(Take(), (Frames{WriteOf(address, value), kRefresh}));
    EXPECT_EQ(Recorded(address), value);
    Unasked(WriteOf(address, before));
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(Take(), Frames{kRefresh}) << "what the unit tells is not sent back";
  }
};

TEST_F(DirectControlsTest, EachControlSendsRecordsAndFollowsItsParameterAsItIs) {
  constexpr std::pair<const char*, int> kRows[] = {
      {"slide_shrink", 135}, {"slide_shrinkv", 262}, {"slide_softu", 291}, {"slide_softv", 293},
      {"slide_softy", 289},  {"slide_umax", 179},    {"slide_umin", 176},  {"slide_vmax", 180},
      {"slide_vmin", 177},   {"slide_ymax", 178},    {"slide_ymin", 175},  {"slide_zoomv", 261},
      {"slide_zoom", 134}};
  Press("chk_shrinkenable");
  for (const auto& [name, address] : kRows) {
    Key(name, Qt::Key_Home);
    Settle();
    ExpectSendsAndFollows(name, address, Qt::Key_Right, "Value");
  }
  ExpectSendsAndFollows("arr_zoompan", 159, Qt::Key_Right, "valueX");
  ExpectSendsAndFollows("arr_zoompan", 160, Qt::Key_Down, "valueY");
  ExpectSendsAndFollows("arr_shrinkposn", 218, Qt::Key_Right, "valueX");
  ExpectSendsAndFollows("arr_shrinkposn", 219, Qt::Key_Down, "valueY");
  ExpectSendsAndFollows("chk_keyenable", 295, Qt::Key_Space, "checked");
  ExpectSendsAndFollows("chk_swapforback", 324, Qt::Key_Space, "checked");
  ExpectSendsAndFollows("chk_shrinkenable", 398, Qt::Key_Space, "checked");
}

TEST_F(DirectControlsTest, APadSendsOneAxisAStep) {
  Form().Pad("arr_zoompan")->setValueY(40);
  Key("arr_zoompan", Qt::Key_Right);
  EXPECT_EQ(Take(), (Frames{WriteOf(159, 1), kRefresh})) << "horizontal wins";
  Key("arr_zoompan", Qt::Key_Up);
  EXPECT_EQ(Take(), (Frames{WriteOf(160, 39), kRefresh}));
}

TEST_F(DirectControlsTest, ListsSendWhatIsChosenAndRecordNothing) {
  const std::int32_t recorded = Recorded(130);
  Key("cbo_program", Qt::Key_End);
  EXPECT_EQ(Take(), (Frames{WriteOf(130, 80), WriteOf(278, 80), kRefresh}));
  EXPECT_EQ(Recorded(130), recorded);
  Key("cbo_lock", Qt::Key_Down);
  EXPECT_EQ(Take(), (Frames{WriteOf(329, 17), kRefresh}));
  Key("cbo_resolution", Qt::Key_Down);
  // On the line a resolution is one more than its place in the list.
  EXPECT_EQ(Take(), (Frames{WriteOf(131, 2), kRefresh}));
}

TEST_F(DirectControlsTest, ButtonsSendWhatTheyStandFor) {
  for (const char* name : {"slide_ymin", "slide_ymax", "slide_umin", "slide_umax", "slide_vmin",
                           "slide_vmax", "slide_softy", "slide_softu", "slide_softv"}) {
    Key(name, Qt::Key_End);
  }
  Settle();
  const std::pair<const char*, Frames> rows[] = {
      {"opt_lockmix", {WriteOf(266, 2), kRefresh}},
      {"opt_lockoff", {WriteOf(266, 0), kRefresh}},
      {"opt_lockgenlock", {WriteOf(266, 1), kRefresh}},
      {"cmd_fade", {WriteOf(403, 1)}},
      {"cmd_fade", {WriteOf(403, -1)}},
      {"cmd_black",
       {WriteOf(175, 0), WriteOf(178, 32), WriteOf(176, 120), WriteOf(179, 134), WriteOf(177, 120),
        WriteOf(180, 134), WriteOf(289, 0), WriteOf(291, 0), WriteOf(293, 0), kRefresh}},
      {"cmd_underscan",
       {WriteOf(135, 90), WriteOf(398, 1), WriteOf(218, 50), WriteOf(219, 50), kRefresh}},
      {"cmd_overscan",
       {WriteOf(135, 100), WriteOf(398, 1), WriteOf(218, 50), WriteOf(219, 50), kRefresh}},
  };
  for (const auto& [name, frames] : rows) {
    Press(name);
    EXPECT_EQ(Take(), frames) << name;
    EXPECT_EQ(Form().cbo_lock->isVisible(), Recorded(266) != 0) << name;
  }
  EXPECT_EQ(Recorded(403), -1);
  EXPECT_EQ(Form().Slider("slide_umax")->Value(), 134);
  EXPECT_EQ(Form().Slider("slide_shrink")->Value(), 100);
  EXPECT_EQ(Recorded(135), 90) << "whichever was pressed";
  EXPECT_EQ(Recorded(398), 0) << "only sent";
}

/// What is recorded of some parameters and shown on a slider as each frame goes out.
TEST_F(DirectControlsTest, EachValueIsRecordedAfterItsWrite) {
  const auto states = [this](const char* button, SliderId slider, std::vector<int> addresses) {
    std::vector<std::string> lines;
    port.on_write = [&](std::string_view) {
      std::string line = std::to_string(Form().Slider(slider)->Value());
      for (const int address : addresses) line += " " + std::to_string(Recorded(address));
      lines.push_back(line);
      return std::string("F0000\r");
    };
    Press(button);
    Settle();
    port.on_write = nullptr;
    return lines;
  };
  for (const int address : {135, 218, 219})
    panel->UnitSession().Unit().values.StoreParamValue(IndexOf(address), 7);
  Form().Slider("slide_shrink")->setValue(33);
  EXPECT_EQ(states("cmd_overscan", "slide_shrink", {135, 218, 219}),
            (Frames{"33 7 7 7", "100 90 7 7", "100 90 7 7", "100 90 50 7"}));
  panel->UnitSession().Unit().values.StoreParamValue(IndexOf(293), 7);
  panel->UnitSession().Unit().values.StoreParamValue(IndexOf(178), 7);
  EXPECT_EQ(states("cmd_black", "slide_ymax", {178, 293}), Frames(9, "32 7 7"));
  EXPECT_EQ(Recorded(293), 0);
  EXPECT_EQ(states("cmd_fade", "slide_ymax", {403}), Frames{"32 0"});
  EXPECT_EQ(states("chk_keyenable", "slide_ymax", {295}), Frames{"32 0"});

  panel.reset();
  Start();  // the port is closed
  QStringList set;
  for (const cpvSlider* const slider : Form().sliders) {
    const_cast<cpvSlider*>(slider)->setValue(50);
    QObject::connect(slider, &cpvSlider::ValueChanged, slider,
                     [&set, slider] { set << slider->objectName().mid(6); });
  }
  Form().cmd_black->setEnabled(true);
  Press("cmd_black");
  EXPECT_EQ(set.join(' ').toStdString(), "ymin umin vmin ymax umax vmax softy softu softv");
}

TEST_F(DirectControlsTest, ATagThatIsSetCountsForSendingAndForReplies) {
  ArrowControl& pad = *Form().Pad("arr_zoompan");
  pad.setProperty("Tag", "218");
  pad.setTAG2("219");
  Form().Slider("slide_ymin")->setProperty("Tag", 178);
  for (const auto& [address, value] : {std::pair{218, 33}, {219, 44}, {159, 9}, {178, 55}}) {
    Unasked(WriteOf(address, value));
  }
  EXPECT_EQ(pad.valueX(), 33);
  EXPECT_EQ(pad.valueY(), 44);
  EXPECT_EQ(Form().Slider("slide_ymin")->Value(), 55);
  EXPECT_EQ(Form().Slider("slide_ymax")->Value(), 55);
  Key("arr_zoompan", Qt::Key_Right);
  EXPECT_EQ(Written(), Frames{WriteOf(218, 34)});
  pad.setProperty("Tag", QVariant());
  Unasked(WriteOf(218, 70));
  EXPECT_EQ(pad.valueX(), 34);
}

TEST_F(DirectControlsTest, StoreAndResetAskFirst) {
  for (const auto& [item, address] :
       {std::pair{"cmd_function_strore", 200}, {"mnu_function_reset", 241}}) {
    for (const bool ok : {true, false}) {
      boxes.answer = ok;
      Choose(item);
      EXPECT_EQ(Take(), (ok ? Frames{WriteOf(address, 1)} : Frames{})) << item;
    }
  }
  EXPECT_EQ(boxes.confirmations.front().prompt, "Store settings in units non volatile memory");
  EXPECT_EQ(boxes.confirmations.back().prompt,
            "Reset the unit to default condition - clears non-volatile memory");
}

TEST_F(PanelFixture, AutosetWaitsForTheUnitAndReadsItsAdjustments) {
  for (const auto& [busy_reads, polls, sleeps] : {std::tuple{3, 4, 5}, {1000, 21, 23}}) {
    panel.reset();
    ConnectUnit({.product_type = 32, .autoset_reads = busy_reads});
    Start();
    Press("Cmd_openclose");
    (void)Written();
    clock.sleeps.clear();
    Press("cmd_autoset");
    Frames expected(static_cast<std::size_t>(1 + polls), ReadOf(254));
    expected[0] = WriteOf(254, 1);
    for (const int address : {182, 183, 222, 223, 145}) expected.push_back(ReadOf(address));
    EXPECT_EQ(Written(), expected);
    std::vector<milliseconds> waits(static_cast<std::size_t>(sleeps), milliseconds(1000));
    waits.back() = milliseconds(2000);
    EXPECT_EQ(clock.sleeps, waits);
    EXPECT_EQ(Recorded(145), unit->Value(145, 16));
  }
}

}  // namespace
}  // namespace kalde2
