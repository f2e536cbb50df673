#include "panel/direct_controls.h"

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

}  // namespace

DirectControls::DirectControls(VornikForm& form, CommandLink& link, ValueStore& values,
                               RefreshTimer& refresh, OperatorQueue& queue, MessageBoxes& boxes)
    : form_(form), link_(link), values_(values), refresh_(refresh), queue_(queue), boxes_(boxes) {}

/// Sends the writes in order, then records. What is recorded is recorded before, too: a handler
/// that runs inside the waits goes by the newest values.
void DirectControls::Send(std::string_view control, const std::vector<Write>& writes,
                          Refresh refresh) {
  queue_.Do(
      control, [this, writes, refresh] { SendNow(writes, refresh); },
      [this, writes] { Record(writes); });
}

void DirectControls::SendNow(const std::vector<Write>& writes, Refresh refresh) {
  for (const Write& write : writes) {
    (void)link_.SendParameter(kWrite, kFirstSourceCode, write.value, write.address);
  }
  Record(writes);
  if (refresh == Refresh::kYes) refresh_.Enable();
}

void DirectControls::Record(const std::vector<Write>& writes) {
  for (const Write& write : writes) {
    if (write.recorded) values_.StoreParamValue(IndexOf(write.address), *write.recorded);
  }
}

void DirectControls::SliderMoved(const SliderRow& row, int value) {
  Send(row.name, {WriteAndRecord(row.address, value)}, Refresh::kYes);
}

void DirectControls::PadStepped(ArrowControl& pad, int x, int y) {
  const Address horizontal = pad.property("Tag").toString().toShort();
  const Address vertical = pad.TAG2().toShort();
  const std::int32_t recorded_x = values_.GetParamValue(IndexOf(horizontal));
  const std::int32_t recorded_y = values_.GetParamValue(IndexOf(vertical));
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
  const std::string axis =
      pad.objectName().toStdString() + OperatorQueue::kPartMark + std::to_string(address);
  Send(axis, {WriteAndRecord(address, value)}, Refresh::kYes);
}

void DirectControls::CheckClicked(const CheckRow& row, bool checked) {
  if (row.address == 0) return;
  Send(row.name, {WriteAndRecord(row.address, checked ? kOn : kOff)}, Refresh::kYes);
}

void DirectControls::CheckChanged(const CheckRow& row, bool checked) {
  const auto enable = [&](const QCheckBox* box, const char* slider, const char* vertical) {
    // On a closed panel the sliders stay disabled with the rest.
    const bool enabled = checked && box->isEnabled();
    form_.Slider(slider)->setEnabled(enabled);
    form_.Slider(vertical)->setEnabled(enabled);
  };
  const QLatin1String name(row.name);
  if (name == form_.chk_shrinkenable->objectName()) {
    enable(form_.chk_shrinkenable, "slide_shrink", "slide_shrinkv");
  } else if (name == form_.chk_zoomenable->objectName()) {
    enable(form_.chk_zoomenable, "slide_zoom", "slide_zoomv");
  }
}

void DirectControls::LockModeClicked(const LockModeRow& row) {
  form_.SetLockSourceVisible(row.value != 0);
  Send(kLockModeControl, {WriteAndRecord(address::kLockMode, row.value)}, Refresh::kYes);
}

void DirectControls::LockSourceSelected() {
  Send("cbo_lock", LockSourceWrites(), Refresh::kYes);
}

std::vector<DirectControls::Write> DirectControls::LockSourceWrites() const {
  return {{address::kLockSource, form_.cbo_lock->currentData().toInt(), {}}};
}

void DirectControls::ProgramSelected() {
  Send("cbo_program", ProgramWrites(), Refresh::kYes);
}

std::vector<DirectControls::Write> DirectControls::ProgramWrites() const {
  const std::int32_t source = form_.cbo_program->currentData().toInt();
  return {{address::kMainInput, source, {}}, {address::kSetupSource, source, {}}};
}

void DirectControls::FillSourceCombos(const ValueNames& names) {
  form_.cbo_lock->clear();
  form_.cbo_program->clear();
  FillCombo(*form_.cbo_lock, names, kLockSourceList);
  if (form_.cbo_lock->count() > 0) {
    form_.cbo_lock->setCurrentIndex(0);
    SendNow(LockSourceWrites(), Refresh::kYes);
  }
  FillCombo(*form_.cbo_program, names, kMainInputList);
  if (form_.cbo_program->count() > 0) {
    form_.cbo_program->setCurrentIndex(0);
    SendNow(ProgramWrites(), Refresh::kYes);
  }
}

void DirectControls::ResolutionSelected() {
  Send("cbo_resolution", {{address::kResolution, form_.cbo_resolution->currentIndex(), {}}},
       Refresh::kYes);
}

void DirectControls::Fade() {
  const bool faded_in = values_.GetParamValue(IndexOf(address::kFade)) == kFadeIn;
  Send("cmd_fade", {WriteAndRecord(address::kFade, faded_in ? kFadeOut : kFadeIn)}, Refresh::kNo);
}

void DirectControls::Black() {
  if (queue_.IsBulk()) return;
  std::vector<Write> writes;
  for (const PresetRow& row : kBlackPreset) {
    form_.Slider(row.slider)->setValue(row.value);
    writes.push_back(WriteAndRecord(row.address, row.value));
  }
  Send("cmd_black", writes, Refresh::kYes);
}

void DirectControls::ShrinkTo(std::int32_t percent) {
  if (queue_.IsBulk()) return;
  const QString horizontal = form_.arr_shrinkposn->property("Tag").toString();
  form_.Slider("slide_shrink")->setValue(percent);
  Send("cmd_overscan",
       {{address::kShrink, percent, kRecordedShrink},
        {address::kShrinkEnable, kOn, {}},
        WriteAndRecord(horizontal.toShort(), kCentre),
        WriteAndRecord(form_.arr_shrinkposn->TAG2().toShort(), kCentre)},
       Refresh::kYes);
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
    (void)link_.SendParameter(kWrite, kFirstSourceCode, kOn, address);
  });
}

}  // namespace kalde2
