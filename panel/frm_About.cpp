#include "panel/frm_About.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "controls/title_width.h"
#include "panel/app_info.h"

namespace kalde2 {

frm_About::frm_About(QWidget* owner) : QDialog(owner) {
  setObjectName(QStringLiteral("frm_About"));
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  Form_Load();
}

void frm_About::Form_Load() {
  const QString title = QString::fromLatin1(AppInfo::kTitle);
  setWindowTitle(QStringLiteral("About ") + title);
  auto* const rows = new QVBoxLayout(this);
  const auto add_label = [&](const char* name, const QString& text) {
    auto* const label = new QLabel(text, this);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    rows->addWidget(label);
    return label;
  };
  QLabel* const heading = add_label("lblTitle", title);
  QFont large = heading->font();
  large.setBold(true);
  constexpr double kHeadingScale = 1.4;
  large.setPointSizeF(large.pointSizeF() * kHeadingScale);
  heading->setFont(large);
  add_label("lblVersion", QStringLiteral("Version ") + QString::fromLatin1(AppInfo::kVersion));
  add_label("lblDescription", QString::fromLatin1(AppInfo::kDescription));
  rows->addStretch(1);

  auto* const buttons = new QDialogButtonBox(this);
  QPushButton* const ok = buttons->addButton(QDialogButtonBox::Ok);
  ok->setObjectName(QStringLiteral("cmdOK"));
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &frm_About::cmdOK_Click);
  rows->addWidget(buttons);
  constexpr int kWidthInCharacters = 44;
  setMinimumWidth(
      std::max(fontMetrics().averageCharWidth() * kWidthInCharacters, WidthForTitle(*this)));
}

void frm_About::cmdOK_Click() {
  close();
}

}  // namespace kalde2
