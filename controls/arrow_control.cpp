#include "controls/arrow_control.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <limits>

#include "controls/arrow_picture.h"
#include "controls/painting.h"

namespace kalde2 {
namespace {

/// What an arrow looks like, which key it has and what it steps while the pad is not reversed.
struct ArrowTraits {
  Qt::ArrowType direction;
  Qt::Key key;
  bool horizontal;
  bool decreases;
  const char* word;
};

/// In the order of ArrowControl::Arrow. Up decreases: the vertical axis runs down the screen.
constexpr std::array<ArrowTraits, 4> kArrows{{
    {Qt::LeftArrow, Qt::Key_Left, true, true, QT_TRANSLATE_NOOP("ArrowControl", "left")},
    {Qt::UpArrow, Qt::Key_Up, false, true, QT_TRANSLATE_NOOP("ArrowControl", "up")},
    {Qt::RightArrow, Qt::Key_Right, true, false, QT_TRANSLATE_NOOP("ArrowControl", "right")},
    {Qt::DownArrow, Qt::Key_Down, false, false, QT_TRANSLATE_NOOP("ArrowControl", "down")},
}};

/// Where a property is kept in a bag, and what it is when it is not there.
struct PersistedProperty {
  const char* property;
  const char* key;
  QVariant absent;
};

/// All properties but "Font", whose default is the container's and no constant.
const std::array<PersistedProperty, 21>& PersistedProperties() {
  static const std::array<PersistedProperty, 21> properties{{
      {"BackColor", "BackColor", ArrowControl::kPaletteBackColor},
      {"ForeColor", "ForeColor", ArrowControl::kPaletteForeColor},
      {"Enabled", "Enabled", true},
      {"BackStyle", "BackStyle", 0},
      {"BorderStyle", "BorderStyle", 0},
      {"Title", "Title", QStringLiteral("PAN")},
      {"TAG2", "TAG2", QString()},
      {"valueXmin", "valueXmin", -100},
      {"valueYmin", "valueYmin", -100},
      {"valueXmax", "valueXmax", 100},
      {"valueYmax", "valueYmax", 100},
      {"valueX", "valueX", 0},
      {"valueY", "valueY", 0},
      {"TextX", "textX", QStringLiteral("H: ")},  // these two keys are spelt with a small t
      {"TextY", "textY", QStringLiteral("V: ")},
      {"StepSingle", "StepSingle", 1},
      {"StepRepeat", "StepRepeat", 5},
      {"RepeatInterval", "RepeatInterval", 0},
      {"VisibleX", "VisibleX", true},
      {"visibleY", "visibleY", true},
      {"Reversed", "Reversed", false},
  }};
  return properties;
}

constexpr QLatin1String kFontKey("Font");

constexpr int kMargin = 3;  // room for the border and the focus ring
constexpr int kGap = 1;     // between the arrows and the labels
constexpr int kTextPadding = 4;
/// An arrow is as thick as a finger or a shaky mouse needs: 20 pixels with a font of 12.
constexpr int kArrowThickness = 20;
constexpr int kArrowFont = 12;
/// A pad larger than its hint gives this part of its width and height to each arrow.
constexpr int kArrowPart = 6;
constexpr float kBorderShare = 0.38F;

bool IsPaletteColor(int color) {
  return color < 0;
}

QColor ColorOf(int color) {
  return {color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF};
}

std::size_t IndexOf(ArrowControl::Arrow arrow) {
  return static_cast<std::size_t>(arrow);
}

/// Presents the pad as a group that reads out both values.
class AccessiblePad : public QAccessibleWidget {
 public:
  explicit AccessiblePad(ArrowControl* pad)
      : QAccessibleWidget(pad, QAccessible::Grouping), pad_(pad) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    QString own = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && own.isEmpty()) return pad_->Title();
    if (kind == QAccessible::Value) return Values();
    if (kind == QAccessible::Description) {
      return own.isEmpty() ? Values() : own + QStringLiteral(". ") + Values();
    }
    return own;
  }

 private:
  [[nodiscard]] QString Values() const {
    return QStringLiteral("%1%2, %3%4")
        .arg(pad_->TextX())
        .arg(pad_->valueX())
        .arg(pad_->TextY())
        .arg(pad_->valueY());
  }

  ArrowControl* const pad_;
};

QAccessibleInterface* MakeAccessiblePad(const QString& /*class_name*/, QObject* object) {
  auto* pad = qobject_cast<ArrowControl*>(object);
  return pad != nullptr ? new AccessiblePad(pad) : nullptr;
}

QLabel* MakeLabel(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setAlignment(Qt::AlignCenter);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

ArrowControl::ArrowControl(QWidget* parent)
    : QWidget(parent), lbl_arrowtitle_(MakeLabel("lbl_arrowtitle", this)) {
  QAccessible::installFactory(MakeAccessiblePad);  // a second installation changes nothing
  setFocusPolicy(Qt::StrongFocus);

  x_.label = MakeLabel("lbl_valx", this);
  x_.prefix = QStringLiteral("H: ");
  y_.label = MakeLabel("lbl_valy", this);
  y_.prefix = QStringLiteral("V: ");
  for (std::size_t i = 0; i < kArrows.size(); ++i) {
    const auto arrow = static_cast<Arrow>(i);
    pictures_[i] = new ArrowPicture(kArrows[i].direction, this);
    pictures_[i]->setObjectName(QStringLiteral("pic_arrow_%1").arg(i));
    connect(pictures_[i], &ArrowPicture::Pressed, this,
            [this, arrow] { Press(arrow, HeldBy::kMouse); });
    connect(pictures_[i], &ArrowPicture::Released, this,
            [this, arrow] { Release(arrow, HeldBy::kMouse); });
    connect(pictures_[i], &ArrowPicture::Activated, this, [this, arrow] { StepOnce(arrow); });
  }

  tmr_repeat_.setParent(this);
  tmr_repeat_.setObjectName(QStringLiteral("tmr_repeat"));
  tmr_repeat_.setTimerType(Qt::PreciseTimer);
  connect(&tmr_repeat_, &QTimer::timeout, this, &ArrowControl::tmr_repeat_Timer);

  lbl_arrowtitle_->setText(QStringLiteral("PAN"));
  NameParts();
  WriteLabels();
  ApplyAxisVisibility();
}

// --- Properties ----------------------------------------------------------------------------------

template <typename Member, typename Value>
void ArrowControl::Store(Member& member, const Value& value, const char* property) {
  member = value;
  MarkChanged(property);
}

void ArrowControl::MarkChanged(const char* property) {
  const QString name = QLatin1String(property);
  if (!changed_.contains(name)) changed_.append(name);
}

void ArrowControl::setBackColor(int color) {
  Store(back_color_, color, "BackColor");
  ApplyColors();
}

void ArrowControl::setForeColor(int color) {
  Store(fore_color_, color, "ForeColor");
  ApplyColors();
}

void ArrowControl::setEnabled(bool enabled) {
  QWidget::setEnabled(enabled);
  MarkChanged("Enabled");
}

QFont ArrowControl::Font() const {
  return lbl_arrowtitle_->font();
}

void ArrowControl::setTitleFont(const QFont& font) {
  lbl_arrowtitle_->setFont(font);
  MarkChanged("Font");
  updateGeometry();
  LayOutParts();
}

void ArrowControl::setBackStyle(std::int16_t style) {
  Store(back_style_, style, "BackStyle");
  update();
}

void ArrowControl::setBorderStyle(std::int16_t style) {
  Store(border_style_, style, "BorderStyle");
  update();
}

QString ArrowControl::Title() const {
  return lbl_arrowtitle_->text();
}

void ArrowControl::setTitle(const QString& title) {
  lbl_arrowtitle_->setText(title);
  MarkChanged("Title");
  NameParts();
  updateGeometry();
}

void ArrowControl::setTAG2(const QString& tag) {
  Store(tag2_, tag, "TAG2");
  emit TAG2Changed();
}

void ArrowControl::setValueXmin(int limit) {
  Store(x_.min, limit, "valueXmin");
  updateGeometry();
}

void ArrowControl::setValueYmin(int limit) {
  Store(y_.min, limit, "valueYmin");
  updateGeometry();
}

void ArrowControl::setValueXmax(int limit) {
  Store(x_.max, limit, "valueXmax");
  updateGeometry();
}

void ArrowControl::setValueYmax(int limit) {
  Store(y_.max, limit, "valueYmax");
  updateGeometry();
}

void ArrowControl::setValueX(int value) {
  Store(x_.value, value, "valueX");
  WriteLabels();
}

void ArrowControl::setValueY(int value) {
  Store(y_.value, value, "valueY");
  WriteLabels();
}

void ArrowControl::setTextX(const QString& text) {
  Store(x_.prefix, text, "TextX");
  WriteLabels();
  updateGeometry();
}

void ArrowControl::setTextY(const QString& text) {
  Store(y_.prefix, text, "TextY");
  WriteLabels();
  updateGeometry();
}

void ArrowControl::setStepSingle(std::int16_t step) {
  Store(step_single_, step, "StepSingle");
}

void ArrowControl::setStepRepeat(std::int16_t step) {
  Store(step_repeat_, step, "StepRepeat");
}

void ArrowControl::setRepeatInterval(int milliseconds) {
  MarkChanged("RepeatInterval");
  tmr_repeat_.setInterval(std::max(0, milliseconds));
  if (tmr_repeat_.interval() == 0) {
    tmr_repeat_.stop();  // a running QTimer of 0 ms would fire all the time
  } else if (pressed_ != Arrow::kNone && !tmr_repeat_.isActive()) {
    tmr_repeat_.start();
  }
}

void ArrowControl::setVisibleX(bool visible) {
  Store(x_.visible, visible, "VisibleX");
}

void ArrowControl::setVisibleY(bool visible) {
  Store(y_.visible, visible, "visibleY");
}

void ArrowControl::setReversed(bool reversed) {
  Store(reversed_, reversed, "Reversed");
}

void ArrowControl::ReadProperties(const QVariantMap& bag) {
  for (const PersistedProperty& row : PersistedProperties()) {
    const QVariant value = bag.value(QLatin1String(row.key), row.absent);
    if (!setProperty(row.property, value)) setProperty(row.property, row.absent);
  }
  const QVariant font = bag.value(kFontKey);
  lbl_arrowtitle_->setFont(font.canConvert<QFont>() ? font.value<QFont>() : QFont());
  ApplyAxisVisibility();
  LayOutParts();
  changed_.clear();
}

void ArrowControl::WriteProperties(QVariantMap& bag) {
  for (const PersistedProperty& row : PersistedProperties()) {
    bag.insert(QLatin1String(row.key), property(row.property));
  }
  bag.insert(kFontKey, Font());
  changed_.clear();
}

// --- Stepping ------------------------------------------------------------------------------------

void ArrowControl::Press(Arrow arrow, HeldBy held_by) {
  // Only a key and the mouse together can hold a second arrow: the newer one takes over.
  if (pressed_ != arrow) EndHold();
  pressed_ = arrow;
  held_by_ = held_by;
  StepBy(arrow, step_single_);
  PictureOf(arrow)->ShowPressed(true);
  if (tmr_repeat_.interval() > 0 && !tmr_repeat_.isActive()) tmr_repeat_.start();
  WriteLabels();
  emit ValueChanged(x_.value, y_.value);
}

/// Holds nothing: whoever hears of the step may wait, and nothing is to repeat meanwhile.
void ArrowControl::StepOnce(Arrow arrow) {
  StepBy(arrow, step_single_);
  WriteLabels();
  emit ValueChanged(x_.value, y_.value);
}

void ArrowControl::Release(Arrow arrow, HeldBy held_by) {
  // Its hold may have ended before: another arrow or the other hand has taken over.
  if (pressed_ == arrow && held_by_ == held_by) EndHold();
}

void ArrowControl::EndHold() {
  if (pressed_ == Arrow::kNone) return;
  PictureOf(pressed_)->ShowPressed(false);
  tmr_repeat_.stop();
  pressed_ = Arrow::kNone;
}

void ArrowControl::tmr_repeat_Timer() {
  if (pressed_ != Arrow::kNone) StepBy(pressed_, step_repeat_);
  WriteLabels();
  emit ValueChanged(x_.value, y_.value);
}

void ArrowControl::StepBy(Arrow arrow, std::int16_t step) {
  const ArrowTraits& traits = kArrows[IndexOf(arrow)];
  Axis& axis = traits.horizontal ? x_ : y_;
  // A step is held back by the limit that it runs towards only: a value that was set beyond the
  // other one comes back step by step. That is intended.
  std::int64_t next = axis.value;
  if (traits.decreases != reversed_) {
    next = std::max<std::int64_t>(next - step, axis.min);
  } else {
    next = std::min<std::int64_t>(next + step, axis.max);
  }
  constexpr std::int64_t kLowest = std::numeric_limits<int>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<int>::max();
  axis.value = static_cast<int>(std::clamp(next, kLowest, kHighest));
}

// --- Events --------------------------------------------------------------------------------------

ArrowPicture* ArrowControl::PictureOf(Arrow arrow) const {
  return pictures_[IndexOf(arrow)];
}

ArrowControl::Arrow ArrowControl::ShownArrowOf(int key) const {
  const auto* const found = std::find_if(kArrows.begin(), kArrows.end(),
                                         [key](const ArrowTraits& row) { return row.key == key; });
  if (found == kArrows.end()) return Arrow::kNone;
  const auto index = found - kArrows.begin();
  const bool shown = !pictures_[static_cast<std::size_t>(index)]->isHidden();
  return shown ? static_cast<Arrow>(index) : Arrow::kNone;
}

void ArrowControl::keyPressEvent(QKeyEvent* event) {
  const bool modified = (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier;
  const Arrow arrow = modified ? Arrow::kNone : ShownArrowOf(event->key());
  if (arrow == Arrow::kNone) {
    QWidget::keyPressEvent(event);
  } else if (!event->isAutoRepeat()) {  // the pad repeats at its own pace
    Press(arrow, HeldBy::kKey);
  }
}

void ArrowControl::keyReleaseEvent(QKeyEvent* event) {
  const Arrow arrow = ShownArrowOf(event->key());
  if (arrow == Arrow::kNone) {
    QWidget::keyReleaseEvent(event);
  } else if (!event->isAutoRepeat()) {
    Release(arrow, HeldBy::kKey);
  }
}

/// The tip stands below the pad: at the pointer it would hide the values that are being changed.
bool ArrowControl::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || toolTip().isEmpty()) return QWidget::event(event);
  QToolTip::showText(mapToGlobal(QPoint(0, height() - kMargin)), toolTip(), this, rect());
  return true;
}

void ArrowControl::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  switch (event->type()) {
    case QEvent::EnabledChange:
      if (!isEnabled()) EndHold();
      break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
      updateGeometry();
      LayOutParts();
      break;
    default:
      break;
  }
}

void ArrowControl::focusOutEvent(QFocusEvent* event) {
  if (held_by_ == HeldBy::kKey) EndHold();
  QWidget::focusOutEvent(event);
}

void ArrowControl::hideEvent(QHideEvent* event) {
  EndHold();
  QWidget::hideEvent(event);
}

void ArrowControl::resizeEvent(QResizeEvent* /*event*/) {
  LayOutParts();
}

// --- Appearance ----------------------------------------------------------------------------------

void ArrowControl::WriteLabels() {
  for (const Axis* axis : {&y_, &x_}) {
    axis->label->setText(axis->prefix + QString::number(axis->value));
  }
  QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&changed);
}

void ArrowControl::NameParts() {
  for (std::size_t i = 0; i < kArrows.size(); ++i) {
    const QString word = tr(kArrows[i].word);
    pictures_[i]->setAccessibleName(QStringLiteral("%1 %2").arg(Title(), word));
    pictures_[i]->setAccessibleDescription(tr("Steps the value %1").arg(word));
  }
}

void ArrowControl::ApplyAxisVisibility() {
  // Without VisibleX the vertical axis is shown, also against visibleY. That is intended.
  const bool show_x = x_.visible;
  const bool show_y = y_.visible || !x_.visible;
  for (std::size_t i = 0; i < kArrows.size(); ++i) {
    pictures_[i]->setVisible(kArrows[i].horizontal ? show_x : show_y);
  }
  x_.label->setVisible(show_x);
  y_.label->setVisible(show_y);
}

void ArrowControl::ApplyColors() {
  QPalette colors;  // sets nothing yet: what it leaves out stays the container's
  if (!IsPaletteColor(back_color_)) {
    colors.setColor(QPalette::Window, ColorOf(back_color_));
    colors.setColor(QPalette::Button, ColorOf(back_color_));
  }
  if (!IsPaletteColor(fore_color_)) {
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
      colors.setColor(group, QPalette::WindowText, ColorOf(fore_color_));
      colors.setColor(group, QPalette::ButtonText, ColorOf(fore_color_));
    }
  }
  for (ArrowPicture* picture : pictures_) picture->setPalette(colors);
  for (QLabel* label : {lbl_arrowtitle_, x_.label, y_.label}) {
    label->setPalette(colors);
    label->setAutoFillBackground(!IsPaletteColor(back_color_));
  }
  update();
}

void ArrowControl::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QColor window = palette().color(QPalette::Window);
  QColor face = Qt::transparent;
  if (back_style_ != 0) face = IsPaletteColor(back_color_) ? window : ColorOf(back_color_);
  QColor edge = face;
  if (border_style_ != 0) {
    edge = Blend(window, palette().color(QPalette::WindowText), kBorderShare);
  }
  PaintBox(painter, rect(), face, edge);
  if (hasFocus()) PaintFocusRing(painter, rect(), palette());
}

int ArrowControl::ArrowThickness() const {
  return std::max(kArrowThickness, QFontInfo(font()).pixelSize() * kArrowThickness / kArrowFont);
}

QSize ArrowControl::LabelsSize() const {
  const QFontMetrics title_metrics(lbl_arrowtitle_->font());
  const QFontMetrics metrics(font());
  int value_width = 0;
  for (const Axis* axis : {&x_, &y_}) {
    for (const int value : {axis->min, axis->max, axis->value}) {
      value_width =
          std::max(value_width, metrics.horizontalAdvance(axis->prefix + QString::number(value)));
    }
  }
  const int width = std::max(title_metrics.horizontalAdvance(Title()), 2 * value_width);
  return {width + 2 * kTextPadding, title_metrics.height() + metrics.height()};
}

QSize ArrowControl::sizeHint() const {
  constexpr int kFrame = 2 * (kMargin + kGap);
  const int around = kFrame + 2 * ArrowThickness();
  return LabelsSize() + QSize(around, around);
}

void ArrowControl::LayOutParts() {
  const QRect area = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const QSize least(ArrowThickness(), ArrowThickness());
  const QSize thickness = least.expandedTo(area.size() / kArrowPart);
  const QRect middle = area.adjusted(thickness.width() + kGap, thickness.height() + kGap,
                                     -thickness.width() - kGap, -thickness.height() - kGap);
  PictureOf(Arrow::kLeft)
      ->setGeometry(area.left(), middle.top(), thickness.width(), middle.height());
  PictureOf(Arrow::kUp)->setGeometry(middle.left(), area.top(), middle.width(), thickness.height());
  PictureOf(Arrow::kRight)
      ->setGeometry(middle.right() + 1 + kGap, middle.top(), thickness.width(), middle.height());
  PictureOf(Arrow::kDown)
      ->setGeometry(middle.left(), middle.bottom() + 1 + kGap, middle.width(), thickness.height());
  LayOutLabels(middle);
}

/// The title and the values stand one below the other, or the values side by side where the height
/// is not enough for three lines.
void ArrowControl::LayOutLabels(const QRect& area) {
  const int title = QFontMetrics(lbl_arrowtitle_->font()).height();
  const int line = QFontMetrics(font()).height();
  const bool both = !x_.label->isHidden() && !y_.label->isHidden();
  const bool side_by_side = both && area.height() < title + 2 * line;
  const int height = title + (both && !side_by_side ? 2 : 1) * line;
  const int top = area.top() + (area.height() - height) / 2;
  lbl_arrowtitle_->setGeometry(area.left(), top, area.width(), title);
  QRect place(area.left(), top + title, area.width(), line);
  if (side_by_side) place.setWidth(area.width() / 2);
  for (QLabel* label : {x_.label, y_.label}) {
    if (label->isHidden()) continue;
    label->setGeometry(place);
    place.translate(side_by_side ? QPoint(place.width(), 0) : QPoint(0, line));
  }
}

}  // namespace kalde2
