#include "controls/fine_adjust_popup.h"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QSignalBlocker>
#include <algorithm>

#include "controls/decimals.h"

namespace kalde2 {

FineAdjustPopup::FineAdjustPopup(QWidget* parent)
    : QFrame(parent, Qt::Popup), lbl_name_(new QLabel(this)), spin_(new QDoubleSpinBox(this)) {
  setObjectName(QStringLiteral("fra_fineadjust"));
  setFrameShape(QFrame::StyledPanel);
  lbl_name_->setObjectName(QStringLiteral("lbl_fineadjust"));
  lbl_name_->setTextFormat(Qt::PlainText);
  lbl_name_->setBuddy(spin_);
  spin_->setObjectName(QStringLiteral("spin_fineadjust"));
  spin_->setAlignment(Qt::AlignRight);
  spin_->setKeyboardTracking(false);  // a number being typed counts once it is complete
  spin_->setAccessibleDescription(tr("Enter keeps the value, Esc restores the previous one"));
  setFocusProxy(spin_);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(3, 3, 3, 3);
  layout->addWidget(lbl_name_);
  layout->addWidget(spin_);
  connect(spin_, &QDoubleSpinBox::valueChanged, this,
          [this](double value) { emit ValuePicked(qRound(value * scale_)); });
}

void FineAdjustPopup::Open(const Subject& subject, const QPoint& position) {
  const QSignalBlocker silence(spin_);
  scale_ = PowerOfTen(subject.decimals);
  const auto shown = [this](int value) { return static_cast<double>(value) / scale_; };
  spin_->setDecimals(subject.decimals);
  spin_->setRange(shown(subject.min), shown(subject.max));
  spin_->setSingleStep(shown(1));
  spin_->setValue(shown(subject.value));
  spin_->setAccessibleName(subject.name);
  lbl_name_->setText(subject.name);
  lbl_name_->setVisible(!subject.name.isEmpty());
  value_at_opening_ = spin_->value();

  adjustSize();
  const QRect room = parentWidget()->screen()->availableGeometry();
  const int left = position.x() - width() / 2;
  move(std::clamp(left, room.left(), std::max(room.left(), room.right() - width())),
       std::clamp(position.y(), room.top(), std::max(room.top(), room.bottom() - height())));
  show();
  spin_->setFocus(Qt::PopupFocusReason);
  spin_->selectAll();
}

void FineAdjustPopup::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  emit Closed();
}

void FineAdjustPopup::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      spin_->setValue(value_at_opening_);  // drops a half-typed number too
      close();
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:  // the spin box has taken a typed number already
      close();
      break;
    default:
      QFrame::keyPressEvent(event);
  }
}

}  // namespace kalde2
