#include "panel/unit_connection.h"

#include "link/fault.h"
#include "link/numbers.h"
#include "model/mod_Producttypes.h"

namespace kalde2 {
namespace {

constexpr std::int32_t kAutosetWithoutFeatures = 71;

std::string Text(const QString& text) {
  return text.toLatin1().toStdString();
}

}  // namespace

UnitConnection::UnitConnection(VornikForm& form, SerialPort& port, CommandLink& link,
                               RefreshTimer& refresh, ProgressView& progress, MessageBoxes& boxes,
                               Steps steps)
    : form_(form),
      port_(port),
      link_(link),
      refresh_(refresh),
      progress_(progress),
      boxes_(boxes),
      steps_(std::move(steps)) {}

void UnitConnection::Open() {
  // From here to the next connectivity that is read, replies are left to the caller. A failed
  // detection leaves it so, which is intended.
  link_.SetDetectionInProgress(true);
  if (const std::string error = OpenPort(); !error.empty()) {
    boxes_.Show(error, BoxIcon::kCritical, "Error opening port - choose another port");
    return;
  }
  ShowPortOpen();
  const ReplyRecord reply = link_.SendParameter(kRead, kFirstSourceCode, 0, address::kProductType);
  if (!port_.PortOpen()) return;
  if (reply.Valid && IsSupportedProduct(reply.Value)) {
    EnterOpenState(reply.Value);
    LoadTables();
  } else {
    EnterClosedState();
    ReportFailure(reply.Valid);
  }
}

/// @return what went wrong, empty on success
std::string UnitConnection::OpenPort() {
  try {
    const double baud = NumericValue(Text(form_.cbo_baud->currentText()));
    PortSetup setup;
    setup.settings = std::to_string(RoundToInt32(baud)) + ",N,8,1";
    setup.handshaking = Handshaking::kRtsXonXoff;
    setup.dtr_enable = true;
    setup.comm_port = RoundToInt16(NumericValue(Text(form_.txt_port->text())));
    return port_.Open(setup).value_or(std::string());
  } catch (const Fault&) {
    return "There is no serial port " + form_.txt_port->text().toStdString() + " on this computer";
  }
}

void UnitConnection::ShowPortOpen() {
  form_.Cmd_openclose->setText(QStringLiteral("Close &Port"));
  form_.cbo_baud->setEnabled(false);
  form_.txt_port->setEnabled(false);
}

void UnitConnection::EnterOpenState(std::int32_t product_type) {
  unit_connected_ = true;
  product_type_ = product_type;
  const std::string_view model = FindModel(product_type)->model_code;
  form_.ShowOpen(QStringLiteral("OPEN : ") +
                 QString::fromLatin1(model.data(), static_cast<qsizetype>(model.size())));
  refresh_.Enable();
  form_.SetPanelEnabled(true);
  OfferControls(product_type);
}

void UnitConnection::OfferControls(std::int32_t product_type) {
  const ProductModel& model = *FindModel(product_type);
  form_.SetFeatureControlsEnabled(model.feature_controls);
  if (!model.feature_controls) {
    form_.cmd_autoset->setEnabled(product_type == kAutosetWithoutFeatures);
  }
  if (!model.feature_controls || model.no_overscan) {
    form_.cmd_overscan->setEnabled(false);
    form_.cmd_underscan->setEnabled(false);
  }
}

void UnitConnection::LoadTables() {
  const auto run = [this](const auto& step) {
    if (!port_.PortOpen()) return;
    try {
      step();
    } catch (const Fault&) {
      // Partial effects stay, the next step runs.
    }
  };
  run([this] { steps_.load_product_catalogue(product_type_); });
  run([this] { steps_.load_value_names(product_type_); });
  run([this] {
    steps_.refresh_command_list();
    refresh_.Enable();
  });
  run([this] { steps_.fill_source_combos(); });
}

void UnitConnection::Close() {
  EnterClosedState();
  progress_.Hide();
}

void UnitConnection::EnterClosedState() {
  port_.Close();
  unit_connected_ = false;
  form_.ShowClosed();
  form_.SetFeatureControlsEnabled(true);
  form_.SetPanelEnabled(false);
  form_.lst_commands->clear();
}

void UnitConnection::ReportFailure(bool answered) {
  if (answered) {
    boxes_.Show("Product not supported", BoxIcon::kExclamation, "Connect");
  } else {
    boxes_.Show("Could not read the product type.\r\n Please ensure the unit is connected",
                BoxIcon::kCritical, "Connect");
  }
}

void UnitConnection::ShutPort() {
  port_.Close();
  progress_.Hide();
  form_.ShowClosed();
}

}  // namespace kalde2
