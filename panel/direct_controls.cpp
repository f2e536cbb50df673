#include "panel/direct_controls.h"

#include <utility>
#include <vector>

namespace kalde2 {
namespace {

constexpr std::int32_t kOn = 1;
constexpr std::int32_t kOff = 0;
constexpr std::int32_t kFadeIn = 1;
constexpr std::int32_t kFadeOut = -1;
constexpr std::int32_t kRecordedShrink = 90;
constexpr std::int32_t kCentre = 50;

void FillCombo(QComboBox& combo, const ValueNames& names, int list) {
  for (int i = 0; i < ValueNames::kItems; ++i) {
    const std::string& item = names.Item(list, i);
    if (item.empty()) continue;
    const LabelledNumber entry = SplitItem(item);
    combo.addItem(QString::fromLatin1(entry.label.c_str()), entry.number);
  }
}

std::int32_t Chosen(const QComboBox& combo) {
  return combo.currentData().toInt();
}

}  // namespace

DirectControls::DirectControls(VornikForm& form, CommandLink& link, ValueStore& values,
                               RefreshTimer& refresh, OperatorQueue& queue, MessageBoxes& boxes)
    : form_(form), link_(link), values_(values), refresh_(refresh), queue_(queue), boxes_(boxes) {}

std::int32_t DirectControls::Recorded(Address address) const {
  return values_.GetParamValue(IndexOf(address));
}

void DirectControls::Record(Address address, std::int32_t value) {
  values_.StoreParamValue(IndexOf(address), value);
}

void DirectControls::Write(Address address, std::int32_t value) {
  (void)link_.SendParameter(kWrite, kFirstSourceCode, value, address);
}

void DirectControls::WriteAndRecord(Address address, std::int32_t value) {
  Write(address, value);
  Record(address, value);
}

/// What a control of one parameter does: write, record, refresh.
void DirectControls::SendOne(std::string_view control, Address address, std::int32_t value) {
  queue_.Do(
      control,
      [this, address, value] {
        WriteAndRecord(address, value);
        refresh_.Enable();
      },
      [this, address, value] { Record(address, value); });
}

void DirectControls::SliderMoved(cpvSlider& slider, const SliderRow& row, int value) {
  if (queue_.IsBulk() || !slider.isEnabled()) {
    slider.TakeBack();
  } else {
    SendOne(row.name, row.address, value);
  }
}

void DirectControls::PadStepped(ArrowControl& pad, int x, int y) {
  const Address horizontal = pad.property("Tag").toString().toShort();
  const Address vertical = pad.TAG2().toShort();
  // An axis that is on its way, or overtaken by an older reply, has not changed once more.
  queue_.NoteNewest(AxisOf(pad, horizontal));
  queue_.NoteNewest(AxisOf(pad, vertical));
  const std::int32_t recorded_x = Recorded(horizontal);
  const std::int32_t recorded_y = Recorded(vertical);
  if (queue_.IsBulk()) {
    pad.setValueX(recorded_x);
    pad.setValueY(recorded_y);
  } else if (x != recorded_x) {
    SendPadAxis(pad, horizontal, x);
  } else if (y != recorded_y) {
    SendPadAxis(pad, vertical, y);
  } else {
    refresh_.Enable();
  }
}

void DirectControls::SendPadAxis(ArrowControl& pad, Address address, int value) {
  SendOne(AxisOf(pad, address), address, value);
}

std::string DirectControls::AxisOf(const ArrowControl& pad, Address address) {
  return OperatorQueue::PartName(pad.objectName().toStdString(), address);
}

void DirectControls::CheckClicked(QCheckBox& box, const CheckRow& row) {
  if (queue_.IsBulk()) {
    box.setChecked(!box.isChecked());
  } else if (row.address != 0) {
    SendOne(row.name, row.address, box.isChecked() ? kOn : kOff);
  }
}

void DirectControls::CheckChanged(const QCheckBox& box, const CheckRow& row) {
  if (row.enables == Group::kNone) return;
  // On a closed panel the sliders stay disabled with the rest.
  const bool enabled = box.isChecked() && box.isEnabled();
  for (std::size_t i = 0; i < kSliders.size(); ++i) {
    if (kSliders[i].group == row.enables) form_.sliders[i]->setEnabled(enabled);
  }
}

void DirectControls::LockModeClicked(const LockModeRow& row) {
  if (queue_.IsBulk()) {
    form_.ShowLockMode(form_.LockMode());
    return;
  }
  form_.ShowLockMode(row.value);
  SendOne(kLockModeControl, address::kLockMode, row.value);
}

void DirectControls::LockSourceSelected() {
  queue_.Do("cbo_lock", [this, source = Chosen(*form_.cbo_lock)] { SendLockSource(source); });
}

void DirectControls::SendLockSource(std::int32_t source) {
  Write(address::kLockSource, source);
  refresh_.Enable();
}

void DirectControls::ProgramSelected() {
  queue_.Do("cbo_program", [this, source = Chosen(*form_.cbo_program)] { SendProgram(source); });
}

void DirectControls::SendProgram(std::int32_t source) {
  Write(address::kMainInput, source);
  Write(address::kSetupSource, source);
  refresh_.Enable();
}

void DirectControls::FillSourceCombos(const ValueNames& names) {
  form_.cbo_lock->clear();
  form_.cbo_program->clear();
  FillCombo(*form_.cbo_lock, names, kLockSourceList);
  if (form_.cbo_lock->count() > 0) SendLockSource(Chosen(*form_.cbo_lock));
  FillCombo(*form_.cbo_program, names, kMainInputList);
  if (form_.cbo_program->count() > 0) SendProgram(Chosen(*form_.cbo_program));
}

void DirectControls::ResolutionSelected() {
  queue_.Do("cbo_resolution", [this, position = form_.cbo_resolution->currentIndex()] {
    Write(address::kResolution, position);
    refresh_.Enable();
  });
}

void DirectControls::Fade() {
  queue_.NoteNewest("cmd_fade");
  const std::int32_t value = Recorded(address::kFade) == kFadeIn ? kFadeOut : kFadeIn;
  queue_.Do(
      "cmd_fade", [this, value] { WriteAndRecord(address::kFade, value); },
      [this, value] { Record(address::kFade, value); });
}

void DirectControls::Black() {
  if (queue_.IsBulk()) return;
  std::vector<std::string> group;
  for (const SliderId slider : kBlackSliders) {
    form_.Slider(slider)->setValue(BlackValueOf(slider));
    group.emplace_back(slider.Row().name);
  }
  const auto record = [this] {
    for (const PresetRow& row : kBlackPreset) Record(row.slider.Row().address, row.value);
  };
  queue_.Do(
      "cmd_black",
      [this, record] {
        for (const PresetRow& row : kBlackPreset) Write(row.slider.Row().address, row.value);
        record();
        refresh_.Enable();
      },
      record, std::move(group));
}

void DirectControls::ShrinkTo(std::int32_t percent) {
  if (queue_.IsBulk()) return;
  ArrowControl& pad = *form_.Pad("arr_shrinkposn");
  const Address horizontal = pad.property("Tag").toString().toShort();
  const Address vertical = pad.TAG2().toShort();
  cpvSlider& slider = *form_.Slider("slide_shrink");
  if (queue_.IsBusy()) {
    // It looks at once as it is going to be, and later steps are reckoned from there.
    slider.setValue(percent);
    pad.setValueX(kCentre);
    pad.setValueY(kCentre);
  }
  queue_.Do(
      "cmd_overscan",
      [this, percent, horizontal, vertical, &slider] {
        Write(address::kShrink, percent);
        Record(address::kShrink, kRecordedShrink);
        if (!queue_.HasKept(slider.objectName().toStdString())) slider.setValue(percent);
        Write(address::kShrinkEnable, kOn);
        WriteAndRecord(horizontal, kCentre);
        WriteAndRecord(vertical, kCentre);
        refresh_.Enable();
      },
      [this, horizontal, vertical] {
        Record(address::kShrink, kRecordedShrink);
        Record(horizontal, kCentre);
        Record(vertical, kCentre);
      },
      {"slide_shrink", AxisOf(pad, horizontal), AxisOf(pad, vertical)});
}

void DirectControls::Store() {
  SendOnOk("cmd_function_strore", "Store settings in units non volatile memory", "Store",
           address::kStore);
}

void DirectControls::Reset() {
  SendOnOk("mnu_function_reset", "Reset the unit to default condition - clears non-volatile memory",
           "Reset", address::kReset);
}

void DirectControls::SendOnOk(const char* control, const char* prompt, const char* title,
                              Address address) {
  queue_.Do(control, [this, prompt, title, address] {
    if (!boxes_.Confirm(prompt, title)) return;
    Write(address, kOn);
  });
}

}  // namespace kalde2
