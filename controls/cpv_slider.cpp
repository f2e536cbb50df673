#include "controls/cpv_slider.h"

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleOptionSlider>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "controls/decimals.h"
#include "controls/fine_adjust_popup.h"
#include "controls/painting.h"

namespace kalde2 {
namespace {

constexpr int kShortestRail = 90;  // pixels; still about three values of 0..255 a pixel
constexpr int kPreferredRail = 130;
constexpr int kValueGap = 6;
constexpr int kMargin = 3;  // room for the focus ring
constexpr int kPagesInRange = 10;
constexpr int kLineThickness = 3;
constexpr float kLineShare = 0.45F;
constexpr float kDisabledShare = 0.6F;  // of the window's colour over a disabled rail
constexpr int kTipGap = 2;

}  // namespace

cpvSlider::cpvSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  // Strong focus on every desktop; not wheel focus, or the wheel would take it and move the value.
  setFocusPolicy(Qt::StrongFocus);
  setToolTip(tr("Right Click to fine adjust"));
  ChangeRange(0, 100);
  connect(this, &QSlider::valueChanged, this, &cpvSlider::OnValueChanged);
}

// --- Properties ----------------------------------------------------------------------------------

void cpvSlider::setMin(int limit) {
  ChangeRange(limit, std::max(limit, maximum()));
}

void cpvSlider::setMax(int limit) {
  ChangeRange(std::min(limit, minimum()), limit);
}

void cpvSlider::ChangeRange(int min, int max) {
  const QScopedValueRollback by_code(set_by_code_, true);
  setRange(min, max);
  setPageStep(std::max(1, (max - min) / kPagesInRange));
  RefreshLayout();
}

void cpvSlider::setValue(int value) {
  withheld_.reset();
  const QScopedValueRollback by_code(set_by_code_, true);
  QSlider::setValue(value);
}

void cpvSlider::Follow(int value) {
  if (isHeld()) {
    withheld_ = value;
  } else {
    setValue(value);
  }
}

void cpvSlider::ShowWithheld() {
  if (withheld_ && !isHeld()) setValue(*withheld_);
}

void cpvSlider::OnValueChanged(int value) {
  // Lowered before anybody hears of the change: a listener may serve events, and what the operator
  // moves meanwhile is his.
  const bool by_code = std::exchange(set_by_code_, false);
  if (show_value_tip_ && isSliderDown()) ShowTip();
  update();
  if (by_code) {
    shown_ = value;
    emit ValueChanged(value);
  } else if (!in_mouse_press_) {
    AnnounceMove();
  }
}

void cpvSlider::AnnounceMove() {
  withheld_.reset();
  const int moved_to = value();
  before_move_ = std::exchange(shown_, moved_to);
  emit ValueChanged(moved_to);
  emit Moved(moved_to);
}

cpvSlider::Adjust cpvSlider::AdjustType() const {
  return orientation() == Qt::Vertical ? Adjust::kVertical : Adjust::kHorizontal;
}

void cpvSlider::setAdjustType(Adjust type) {
  setOrientation(type == Adjust::kVertical ? Qt::Vertical : Qt::Horizontal);
  RefreshLayout();
}

void cpvSlider::setDecimalDisplay(int decimals) {
  decimals_ = std::clamp(decimals, 0, kMostDecimals);
  RefreshLayout();
}

void cpvSlider::setRailStyle(Rail style) {
  rail_style_ = style;
  update();
}

void cpvSlider::setRailPicture(const QPixmap& picture) {
  rail_picture_ = picture;
  update();
}

void cpvSlider::setSliderIcon(const QIcon& icon) {
  slider_icon_ = icon;
  update();
}

void cpvSlider::setShowValue(bool show) {
  show_value_ = show;
  RefreshLayout();
}

// --- What the operator does ----------------------------------------------------------------------

bool cpvSlider::isHeld() const {
  const bool holds_rail = repeatAction() != SliderNoAction;
  const bool adjusts = fine_adjust_ != nullptr && fine_adjust_->isVisible();
  return isSliderDown() || holds_rail || adjusts;
}

void cpvSlider::OpenFineAdjust() {
  if (isHeld() || !isEnabled()) return;
  if (fine_adjust_ == nullptr) {
    fine_adjust_ = new FineAdjustPopup(this);
    connect(fine_adjust_, &FineAdjustPopup::ValuePicked, this,
            [this](int value) { QSlider::setValue(value); });
    connect(fine_adjust_, &FineAdjustPopup::Closed, this, [this] {
      update();
      ShowWithheld();
    });
  }
  const FineAdjustPopup::Subject subject{minimum(), maximum(), value(), decimals_,
                                         accessibleName()};
  const QRect handle = HandleRect();
  fine_adjust_->Open(subject, mapToGlobal(QPoint(handle.center().x(), handle.bottom() + 2)));
  update();
}

void cpvSlider::contextMenuEvent(QContextMenuEvent* event) {
  // The right button opens it on its release, see there.
  if (event->reason() != QContextMenuEvent::Mouse) OpenFineAdjust();
  event->accept();
}

void cpvSlider::keyPressEvent(QKeyEvent* event) {
  const bool shift_f10 = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
  if (shift_f10 || event->key() == Qt::Key_Menu) {
    OpenFineAdjust();
  } else {
    QSlider::keyPressEvent(event);
  }
}

void cpvSlider::mousePressEvent(QMouseEvent* event) {
  right_pressed_ = event->button() == Qt::RightButton;
  {
    // Whoever hears of a change may serve events, the button's release among them: a press that is
    // not done by then would go on holding the slider with no button down.
    const QScopedValueRollback in_press(in_mouse_press_, true);
    QSlider::mousePressEvent(event);
  }
  if (show_value_tip_ && isSliderDown()) ShowTip();
  if (value() != shown_) AnnounceMove();
}

void cpvSlider::mouseReleaseEvent(QMouseEvent* event) {
  QSlider::mouseReleaseEvent(event);
  if (!isSliderDown()) HideTip();
  ShowWithheld();
  if (event->button() != Qt::RightButton) return;
  // A release alone is no click: its press may have been kept from the slider.
  const bool clicked = std::exchange(right_pressed_, false);
  if (clicked && rect().contains(event->position().toPoint())) OpenFineAdjust();
  event->accept();
}

void cpvSlider::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QSlider::wheelEvent(event);
  } else {
    event->ignore();
  }
}

void cpvSlider::changeEvent(QEvent* event) {
  QSlider::changeEvent(event);
  switch (event->type()) {
    case QEvent::EnabledChange:
      if (!isEnabled()) {
        setRepeatAction(SliderNoAction);
        HideTip();
        if (fine_adjust_ != nullptr) fine_adjust_->close();
        ShowWithheld();
      }
      break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
      RefreshLayout();
      break;
    default:
      break;
  }
}

void cpvSlider::hideEvent(QHideEvent* event) {
  setRepeatAction(SliderNoAction);
  setSliderDown(false);
  HideTip();
  if (fine_adjust_ != nullptr) fine_adjust_->close();
  ShowWithheld();
  QSlider::hideEvent(event);
}

// --- Appearance ----------------------------------------------------------------------------------

QString cpvSlider::TextOf(int value) const {
  QLocale plain = locale();
  plain.setNumberOptions(QLocale::OmitGroupSeparator);
  return plain.toString(static_cast<double>(value) / PowerOfTen(decimals_), 'f', decimals_);
}

/// The tip stands above the handle, where neither the pointer nor the hand hides it; the toolkit's
/// own tips stand below the pointer.
void cpvSlider::ShowTip() {
  if (tip_ == nullptr) {
    tip_ = new QLabel(this, Qt::ToolTip);
    tip_->setObjectName(QStringLiteral("lbl_valuetip"));
    tip_->setAttribute(Qt::WA_TransparentForMouseEvents);
    tip_->setPalette(QToolTip::palette());
    tip_->setBackgroundRole(QPalette::ToolTipBase);
    tip_->setForegroundRole(QPalette::ToolTipText);
    tip_->setFont(QToolTip::font());
    tip_->setFrameShape(QFrame::Box);
    tip_->setMargin(kTipGap);
  }
  tip_->setText(TextOf(sliderPosition()));
  tip_->adjustSize();
  const QRect handle = HandleRect();
  const QPoint above(handle.center().x() - tip_->width() / 2,
                     handle.top() - kTipGap - tip_->height());
  tip_->move(mapToGlobal(above));
  tip_->show();
}

void cpvSlider::HideTip() {
  if (tip_ != nullptr) tip_->hide();
}

QSize cpvSlider::ValueSize() const {
  if (!show_value_) return {0, 0};
  const QFontMetrics metrics(font());
  const int widest = std::max(metrics.horizontalAdvance(TextOf(minimum())),
                              metrics.horizontalAdvance(TextOf(maximum())));
  return {widest, metrics.height()};
}

QRect cpvSlider::Inside() const {
  return rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
}

QRect cpvSlider::RailArea() const {
  const QRect inside = Inside();
  if (!show_value_) return inside;
  const QSize text = ValueSize();
  if (orientation() == Qt::Vertical) return inside.adjusted(0, 0, 0, -text.height());
  const QRect left_part = inside.adjusted(0, 0, -text.width() - kValueGap, 0);
  return QStyle::visualRect(layoutDirection(), rect(), left_part);
}

QRect cpvSlider::ValueArea() const {
  QRect area = Inside();
  const QSize text = ValueSize();
  if (orientation() == Qt::Vertical) {
    area.setTop(area.bottom() + 1 - text.height());
    return area;
  }
  area.setLeft(area.right() + 1 - text.width());
  return QStyle::visualRect(layoutDirection(), rect(), area);
}

QSize cpvSlider::SizeWithRail(int rail_length) const {
  constexpr QSize kFrame(2 * kMargin, 2 * kMargin);
  const QSize text = ValueSize();
  const int thickness = style()->pixelMetric(QStyle::PM_SliderThickness, nullptr, this);
  if (orientation() == Qt::Vertical) {
    return QSize(std::max(thickness, text.width()), rail_length + text.height()) + kFrame;
  }
  const int beside = show_value_ ? text.width() + kValueGap : 0;
  return QSize(rail_length + beside, std::max(thickness, text.height())) + kFrame;
}

QSize cpvSlider::sizeHint() const {
  return SizeWithRail(kPreferredRail);
}

QSize cpvSlider::minimumSizeHint() const {
  return SizeWithRail(kShortestRail);
}

void cpvSlider::RefreshLayout() {
  updateGeometry();
  update();
}

void cpvSlider::initStyleOption(QStyleOptionSlider* option) const {
  // Everything that paints the slider or looks for its parts starts from this option: the rectangle
  // leaves the value's place to the value.
  QSlider::initStyleOption(option);
  option->rect = RailArea();
}

QRect cpvSlider::HandleRect() const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}

bool cpvSlider::DrawsOwnRail() const {
  return rail_style_ == Rail::kLine || (rail_style_ == Rail::kPicture && !rail_picture_.isNull());
}

void cpvSlider::paintEvent(QPaintEvent* event) {
  const bool as_style_does = !DrawsOwnRail() && slider_icon_.isNull();
  if (as_style_does) QSlider::paintEvent(event);
  QPainter painter(this);
  if (!as_style_does) PaintSlider(painter);
  if (!isEnabled()) {
    QColor veil = palette().color(QPalette::Window);
    veil.setAlphaF(kDisabledShare);
    painter.fillRect(RailArea(), veil);
  }
  const bool adjusts = fine_adjust_ != nullptr && fine_adjust_->isVisible();
  if (hasFocus() || adjusts) PaintFocusRing(painter, rect(), palette());
  if (!show_value_) return;
  const bool upright = orientation() == Qt::Vertical;
  const Qt::Alignment side = upright ? Qt::AlignHCenter : Qt::AlignRight;
  style()->drawItemText(&painter, ValueArea(), static_cast<int>(side | Qt::AlignVCenter), palette(),
                        isEnabled(), TextOf(sliderPosition()), QPalette::WindowText);
}

void cpvSlider::PaintSlider(QPainter& painter) const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  option.subControls = QStyle::SC_None;
  if (DrawsOwnRail()) {
    PaintRail(painter,
              style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this));
  } else {
    option.subControls |= QStyle::SC_SliderGroove;
  }
  if (slider_icon_.isNull()) option.subControls |= QStyle::SC_SliderHandle;
  if (isSliderDown()) {
    option.activeSubControls = QStyle::SC_SliderHandle;
    option.state |= QStyle::State_Sunken;
  }
  style()->drawComplexControl(QStyle::CC_Slider, &option, &painter, this);
  if (!slider_icon_.isNull()) {
    slider_icon_.paint(&painter, HandleRect(), Qt::AlignCenter,
                       isEnabled() ? QIcon::Normal : QIcon::Disabled);
  }
}

void cpvSlider::PaintRail(QPainter& painter, const QRect& groove) const {
  if (rail_style_ == Rail::kPicture) {
    painter.drawPixmap(groove, rail_picture_);
    return;
  }
  const QPoint half(kLineThickness / 2, kLineThickness / 2);
  QRect line(groove.center() - half, QSize(kLineThickness, kLineThickness));
  if (orientation() == Qt::Vertical) {
    line.setTop(groove.top());
    line.setBottom(groove.bottom());
  } else {
    line.setLeft(groove.left());
    line.setRight(groove.right());
  }
  const QColor ink = palette().color(QPalette::WindowText);
  painter.fillRect(line, Blend(palette().color(QPalette::Window), ink, kLineShare));
}

}  // namespace kalde2
