#include "adapters/qt_serial_port.h"

#include <QFileInfo>
#include <QStringList>
#include <algorithm>
#include <array>

#include "link/fault.h"
#include "link/scoped_flag.h"

namespace kalde2 {
namespace {

/// Unread input is kept up to here, so that a unit nobody listens to cannot fill the memory. Any
/// reply is far shorter, and a transaction begins with throwing away what waits.
constexpr qint64 kUnreadLimit = 65536;

template <typename Value>
struct Spelling {
  const char* text;
  Value value;
};

constexpr std::array<Spelling<QSerialPort::Parity>, 5> kParities = {
    {{"N", QSerialPort::NoParity},
     {"E", QSerialPort::EvenParity},
     {"O", QSerialPort::OddParity},
     {"M", QSerialPort::MarkParity},
     {"S", QSerialPort::SpaceParity}}};
constexpr std::array<Spelling<QSerialPort::DataBits>, 4> kDataBits = {{{"5", QSerialPort::Data5},
                                                                       {"6", QSerialPort::Data6},
                                                                       {"7", QSerialPort::Data7},
                                                                       {"8", QSerialPort::Data8}}};
constexpr std::array<Spelling<QSerialPort::StopBits>, 3> kStopBits = {
    {{"1", QSerialPort::OneStop},
     {"1.5", QSerialPort::OneAndHalfStop},
     {"2", QSerialPort::TwoStop}}};

template <typename Table>
auto Find(const Table& table, const QString& text) -> decltype(&table.front().value) {
  const auto found = std::ranges::find_if(
      table, [&](const auto& spelling) { return text == QLatin1String(spelling.text); });
  return found == table.end() ? nullptr : &found->value;
}

/// Puts "57600,N,8,1" onto a closed port. @return false when the text is no such settings
bool ApplySettings(QSerialPort& port, const QString& settings) {
  const QStringList fields = settings.split(',');
  if (fields.size() != 4) return false;
  const int baud = fields[0].toInt();
  const auto* parity = Find(kParities, fields[1].toUpper());
  const auto* data_bits = Find(kDataBits, fields[2]);
  const auto* stop_bits = Find(kStopBits, fields[3]);
  if (baud <= 0 || parity == nullptr || data_bits == nullptr || stop_bits == nullptr) return false;
  return port.setBaudRate(baud) && port.setParity(*parity) && port.setDataBits(*data_bits) &&
         port.setStopBits(*stop_bits);
}

}  // namespace

QtSerialPort::QtSerialPort(const PortDirectory& directory, QObject* parent)
    : QObject(parent), directory_(directory), port_(this) {
  port_.setObjectName("MSComm1");
  connect(&port_, &QSerialPort::readyRead, this, &QtSerialPort::OnReadyRead);
  connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialPort::OnError);
}

QtSerialPort::~QtSerialPort() {
  port_.disconnect(this);
  QtSerialPort::Close();
}

std::optional<std::string> QtSerialPort::Open(const PortSetup& setup) {
  Close();
  const QString settings = QString::fromLatin1(setup.settings);
  if (!ApplySettings(port_, settings)) {
    return QString("\"%1\" is not a setting of a serial port").arg(settings).toStdString();
  }
  const QString device = QString::fromStdString(directory_.DeviceFor(setup.comm_port));
  if (device.isEmpty()) {
    return QString("There is no serial port %1 on this computer")
        .arg(setup.comm_port)
        .toStdString();
  }
  const QString problem = OpenDevice(device, setup);
  if (problem.isEmpty()) return std::nullopt;
  Close();
  return problem.toStdString();
}

/// @return empty on success, else what is wrong; the port may be open then
QString QtSerialPort::OpenDevice(const QString& device, const PortSetup& setup) {
  ++opening_;
  is_lost_ = false;
  device_ = device;
  port_.setPortName(CanonicalDevice(device));
  port_.setFlowControl(QSerialPort::HardwareControl);
  if (!port_.open(QIODevice::ReadWrite)) return WhyNotOpened(device);
  loss_watch_ = WatchForLoss(port_.handle(), [this] { NoteLoss(); });
  // A line without modem signals has no DTR; it works all the same.
  port_.setDataTerminalReady(setup.dtr_enable);
  if (!SetFlowControl(port_.handle(), setup.handshaking)) {
    return QString("%1 does not take the flow control").arg(device);
  }
  // Some lines keep what the unit said while they were closed; it would pass for the first reply.
  port_.clear(QSerialPort::Input);
  return {};
}

QString QtSerialPort::WhyNotOpened(const QString& device) const {
  if (port_.error() != QSerialPort::PermissionError) return port_.errorString();
  if (const QString lock = AbandonedLock(device); !lock.isEmpty()) {
    return QString("%1 is locked by %2, whose owner no longer runs. To free it, type: sudo rm %2")
        .arg(device, lock);
  }
  if (MayOpen(device)) return QString("%1 is in use by another program").arg(device);
  return QString("%1 may only be used by the members of the group \"%2\"")
      .arg(device, QFileInfo(device).group());
}

void QtSerialPort::Close() {
  if (!port_.isOpen()) return;
  // The system would wait half a minute for a unit that is off to take what is left.
  port_.clear(QSerialPort::Output);
  loss_watch_.reset();
  port_.close();
  ++opening_;
}

void QtSerialPort::Output(std::string_view text) {
  const LineState line = RequireLine();
  const auto size = static_cast<qint64>(text.size());
  if (port_.write(text.data(), size) != size) throw Fault(port_.errorString().toStdString());
  // What the line does not take now, QSerialPort sends as soon as it does.
  if (line.takes_output) port_.flush();
  if (is_lost_) throw Fault("the line is gone");
}

std::string QtSerialPort::Input() {
  if (RequireLine().has_input) Fetch();
  return port_.readAll().toStdString();
}

/// Takes over what waits in the system, which QSerialPort itself does in the event loop only.
void QtSerialPort::Fetch() {
  const ScopedFlag fetching(is_fetching_);
  while (port_.waitForReadyRead(0) && port_.bytesAvailable() < kUnreadLimit &&
         LookAt(port_.handle()).has_input) {
  }
}

void QtSerialPort::SetHandshaking(Handshaking handshaking) {
  if (!port_.isOpen()) return;
  // A line that refuses is left as it is: the transaction then shows whether it works.
  (void)SetFlowControl(port_.handle(), handshaking);
  if (handshaking == Handshaking::kRts) RestartOutput(port_.handle());
}

void QtSerialPort::OnReadyRead() {
  if (is_fetching_) return;
  if (Listener() != nullptr) Listener()->MSComm1_OnComm();
  if (port_.isOpen() && port_.bytesAvailable() > kUnreadLimit) port_.readAll();
}

void QtSerialPort::OnError(QSerialPort::SerialPortError error) {
  const bool concerns_line = error == QSerialPort::ReadError ||
                             error == QSerialPort::ResourceError ||
                             error == QSerialPort::WriteError;
  if (!concerns_line || !port_.isOpen()) return;
  if (LookAt(port_.handle()).is_gone) {
    NoteLoss();
  } else {
    // The event loop told of characters that were read ahead of it, and QSerialPort takes a read
    // of nothing for an error. Setting the buffer's size resumes its reading.
    port_.setReadBufferSize(port_.readBufferSize());
  }
}

void QtSerialPort::NoteLoss() {
  if (is_lost_ || !port_.isOpen()) return;
  is_lost_ = true;
  // A line that is gone reports errors without end, so closing takes its turn ahead of all timers,
  // yet not in the midst of QSerialPort's own work or of a caller's.
  QMetaObject::invokeMethod(
      this, [this, opening = opening_] { Lose(opening); }, Qt::QueuedConnection);
}

void QtSerialPort::Lose(unsigned opening) {
  if (opening != opening_) return;
  Close();
  if (Listener() != nullptr) Listener()->PortLost((device_ + " is gone").toStdString());
}

/// @return how the open line stands @throws Fault when the port is closed or its line gone
LineState QtSerialPort::RequireLine() {
  if (!port_.isOpen()) throw Fault("the port is closed");
  const LineState line = LookAt(port_.handle());
  if (line.is_gone) NoteLoss();
  if (is_lost_) throw Fault("the line is gone");
  return line;
}

}  // namespace kalde2
