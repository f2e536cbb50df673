#include "panel/unit_connection.h"

namespace kalde2 {
namespace {

std::string Text(const QString& text) {
  return text.toStdString();
}

}  // namespace

UnitConnection::UnitConnection(VornikForm& form, Session& session, OperatorQueue& queue,
                               Clock& clock, RefreshTimer& refresh, frm_Progress& progress,
                               MessageBoxes& boxes, Steps steps)
    : form_(form),
      session_(session),
      queue_(queue),
      refresh_(refresh),
      progress_(progress),
      connectivity_progress_(progress, clock, ShownProgress::Result::kStaysServed),
      boxes_(boxes),
      steps_(std::move(steps)) {}

void UnitConnection::Open() {
  using Ending = OpenResult::Ending;
  const OpenResult result =
      session_.Open(Text(form_.cbo_baud->currentText()), Text(form_.txt_port->text()));
  switch (result.ending) {
    case Ending::kOpened:
      LoadTables();
      return;
    case Ending::kPortFailed:
      boxes_.Show(result.text, BoxIcon::kCritical, "Error opening port - choose another port");
      return;
    case Ending::kNoAnswer:
      ShowPanelClosed();
      boxes_.Show("Could not read the product type.\r\n Please ensure the unit is connected",
                  BoxIcon::kCritical, "Connect");
      return;
    case Ending::kNotSupported:
      ShowPanelClosed();
      boxes_.Show("Product not supported", BoxIcon::kExclamation, "Connect");
      return;
    case Ending::kClosedMeanwhile:
      return;
  }
}

void UnitConnection::ShowPortOpen() {
  form_.Cmd_openclose->setText(QStringLiteral("Close &Port"));
  form_.cbo_baud->setEnabled(false);
  form_.txt_port->setEnabled(false);
}

void UnitConnection::ShowUnit(const Product& product) {
  const std::string_view model = product.model_code;
  form_.ShowOpen(QStringLiteral("OPEN : ") +
                 QString::fromLatin1(model.data(), static_cast<qsizetype>(model.size())));
  refresh_.Enable();
  form_.SetPanelEnabled(true);
  form_.SetFeatureControlsEnabled(product.feature_controls);
  form_.cmd_autoset->setEnabled(product.autoset);
  if (!product.feature_controls || product.no_overscan) {
    form_.cmd_overscan->setEnabled(false);
    form_.cmd_underscan->setEnabled(false);
  }
}

void UnitConnection::LoadTables() {
  // There is no list to refresh while the connectivity is read.
  refresh_.Disable();
  session_.LoadTables(connectivity_progress_);
  session_.RunStep([this] {
    steps_.refresh_command_list();
    refresh_.Enable();
  });
  session_.RunStep([this] { steps_.fill_source_combos(); });
}

void UnitConnection::Close() {
  session_.Close();
  ShowPanelClosed();
  progress_.Hide();
}

void UnitConnection::ShowPanelClosed() {
  form_.ShowClosed();
  form_.txt_port->setEnabled(true);
  form_.SetFeatureControlsEnabled(true);
  form_.SetPanelEnabled(false);
  form_.lst_commands->clear();
}

void UnitConnection::ShowLoss(const std::string& reason) {
  ShowPanelClosed();
  progress_.Hide();
  queue_.Do("MSComm1", [this, reason] {
    boxes_.Show("The serial port was lost: " + reason, BoxIcon::kCritical, "Connect");
  });
}

void UnitConnection::ShutPort() {
  session_.Close();
  progress_.Hide();
  form_.ShowClosed();
}

}  // namespace kalde2
