#include "controls/drop_down_list.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QKeyEvent>

#include "controls/shared_style.h"

namespace kalde2 {
namespace {

constexpr int kVisibleEntries = 15;

}  // namespace

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) {
  // Strong focus on every desktop; not wheel focus, or the wheel would take it and change the list.
  setFocusPolicy(Qt::StrongFocus);
  setMaxVisibleItems(kVisibleEntries);
  setStyle(SharedStyle());
}

void DropDownList::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  const bool types = !text.isEmpty() && text.front().isPrint() && event->key() != Qt::Key_Space;
  if (!types) {
    QComboBox::keyPressEvent(event);
  } else if ((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) !=
             0) {
    event->ignore();  // a short cut of somebody else's
  } else if (count() > 0) {
    showPopup();
    view()->keyboardSearch(QString());  // begins anew
    QCoreApplication::sendEvent(view(), event);
  }
}

void DropDownList::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace kalde2
