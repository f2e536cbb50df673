#pragma once

#include <QDialog>

namespace kalde2 {

/// The about box: title, version and description of the application. Modeless; its OK button
/// unloads it.
class frm_About : public QDialog {
  Q_OBJECT

 public:
  explicit frm_About(QWidget* owner);

 private:
  void Form_Load();
  void cmdOK_Click();
};

}  // namespace kalde2
