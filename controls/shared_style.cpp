#include "controls/shared_style.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

#include "controls/painting.h"

namespace kalde2 {
namespace {

constexpr float kFrameShare = 0.5F;

bool IsDark(const QPalette& colors) {
  return colors.color(QPalette::Window).lightness() <
         colors.color(QPalette::WindowText).lightness();
}

class ControlStyle : public QProxyStyle {
 public:
  ControlStyle() : QProxyStyle(QApplication::style()->name()) {
    // This one mixes the frames of marks from the background alone: in the dark nobody sees them.
    // Desktops' settings may stand before it.
    const QStyle* innermost = baseStyle();
    while (const auto* const proxy = qobject_cast<const QProxyStyle*>(innermost)) {
      innermost = proxy->baseStyle();
    }
    draws_frames_ = innermost->name() == QLatin1String("fusion");
  }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    // As a menu, as some styles have it, a long list would cover the whole screen.
    return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool is_mark = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    if (!is_mark || !draws_frames_ || !IsDark(option->palette)) return;
    const QColor window = option->palette.color(QPalette::Window);
    const QColor ink = option->palette.color(QPalette::WindowText);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Blend(window, ink, kFrameShare));
    painter->setBrush(Qt::NoBrush);
    const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == PE_IndicatorCheckBox) {
      painter->drawRect(frame);
    } else {
      painter->drawEllipse(frame);
    }
    painter->restore();
  }

 private:
  bool draws_frames_ = false;
};

}  // namespace

QStyle* SharedStyle() {
  const auto name = QStringLiteral("kalde2_shared_style");
  auto* style = qApp->findChild<QStyle*>(name, Qt::FindDirectChildrenOnly);
  if (style == nullptr) {
    style = new ControlStyle;
    style->setObjectName(name);
    style->setParent(qApp);
  }
  return style;
}

}  // namespace kalde2
