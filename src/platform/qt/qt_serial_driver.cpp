#include "platform/qt/qt_serial_driver.h"

#include <utility>

#include "platform/failure.h"
#include "platform/qt/port_lock.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/serial_device.h"

namespace firmlane {

namespace {

using namespace serial_device;

QSerialPort::FlowControl flowControl(Handshake handshake) {
  switch (handshake) {
    case Handshake::XonXoff:
      return QSerialPort::SoftwareControl;
    case Handshake::Rts:
      return QSerialPort::HardwareControl;
    case Handshake::None:
      break;
  }
  return QSerialPort::NoFlowControl;
}

std::string portName(int number, const std::string& device) {
  const std::string name = "COM " + std::to_string(number);
  return device.empty() ? name : name + " (" + device + ")";
}

[[noreturn]] void throwOpenFailure(const std::string& name, const QSerialPort& port) {
  switch (port.error()) {
    case QSerialPort::DeviceNotFoundError:
      throw Failure(kMissing, "There is no serial port " + name);
    case QSerialPort::PermissionError: {
      const std::string owner = portLock(port.portName()).owner;
      throw Failure(kBusy, "Serial port " + name + " is in use by another program" + (owner.empty() ? "" : " (" + owner + ")"));
    }
    default:
      throw Failure(kOther, "Serial port " + name + " does not open: " + fromQt(port.errorString()));
  }
}

/// Opens a device, also one whose lock nobody holds any more but only somebody else may remove: a further slash names the same
/// device and a lock of its own, in which all meet that find the first one abandoned. The system itself keeps out whoever would
/// open a device that is in use.
bool openDevice(QSerialPort& port, QString path) {
  constexpr int kMostLocks = 4;
  for (int lock = 0; lock < kMostLocks; ++lock, path.prepend(QLatin1Char('/'))) {
    port.setPortName(path);
    if (port.open(QIODevice::ReadWrite)) {
      return true;
    }
    if (port.error() != QSerialPort::PermissionError || !portLock(path).abandoned) {
      return false;
    }
  }
  return false;
}

}  // namespace

QtSerialDriver::~QtSerialDriver() = default;

void QtSerialDriver::open(int number, const LineSettings& settings) {
  const std::string device = ports_.device(number);
  name_ = portName(number, device);
  if (device.empty()) {
    throw Failure(kMissing, "There is no serial port " + name_);
  }
  const QString path = nameToOpen(name_, toQt(device));
  auto port = std::make_unique<QSerialPort>();
  port->setBaudRate(settings.baud);
  port->setFlowControl(flowControl(settings.handshake));
  if (!openDevice(*port, path)) {
    throwOpenFailure(name_, *port);
  }
  begin(*port);
  port_ = std::move(port);
  QObject::connect(port_.get(), &QSerialPort::readyRead, &context_, [this] { takeBytes(); });
  QObject::connect(port_.get(), &QSerialPort::errorOccurred, &context_, [this](QSerialPort::SerialPortError error) {
    // A device that has gone raises its error again and again, so the first one ends it.
    if (port_ && hasGone(*port_, error)) {
      // Its words are of some earlier call when the device has simply come to its end.
      lose("the device does not answer any more");
    }
  });
}

void QtSerialDriver::configure(const LineSettings& settings) {
  if (port_) {
    port_->setBaudRate(settings.baud);
  }
  // That may have found out that the device has gone.
  if (port_) {
    port_->setFlowControl(flowControl(settings.handshake));
  }
}

void QtSerialDriver::close() {
  if (!port_) {
    return;
  }
  QObject::disconnect(port_.get(), nullptr, &context_, nullptr);
  for (int tries = 0; tries < 100 && unsent() + heldByDevice() > 0 && port_->error() == QSerialPort::NoError; ++tries) {
    letLeave(*port_);
  }
  if (unsent() + heldByDevice() > 0) {
    port_->clear(QSerialPort::Output);
  }
  waitForTransmitter(*port_);
  port_.reset();
}

void QtSerialDriver::send(ByteSpan bytes) {
  if (!port_) {
    return;
  }
  std::string reason;
  const std::size_t taken = sendNow(*port_, bytes, reason);
  if (!reason.empty()) {
    lose(reason);
    return;
  }
  // What the system does not take now goes later, as the event loop finds room.
  if (const ByteSpan rest = bytes.subspan(taken); !rest.empty()) {
    port_->write(reinterpret_cast<const char*>(rest.data()), static_cast<qint64>(rest.size()));
  }
}

std::size_t QtSerialDriver::unsent() const {
  if (!port_) {
    return 0;
  }
  const auto waiting = static_cast<std::size_t>(port_->bytesToWrite());
  // Without handshake the line never stops, and the device's own count only tells how deep its buffers are.
  return port_->flowControl() == QSerialPort::NoFlowControl ? waiting : waiting + heldByDevice();
}

std::size_t QtSerialDriver::heldByDevice() const { return port_ ? held(*port_) : 0; }

void QtSerialDriver::fetch() {
  // Each turn hands over, by way of readyRead, one reading of what the system holds; a line that never pauses gets so many.
  constexpr int kMostReadings = 16;
  for (int reading = 0; reading < kMostReadings && port_ && port_->waitForReadyRead(0); ++reading) {
  }
  if (port_) {
    port_->clearError();  // that nothing more waits is a time-out to Qt
  }
}

void QtSerialDriver::discard() {
  if (port_) {
    port_->clear(QSerialPort::Input);
  }
}

void QtSerialDriver::takeBytes() {
  const QByteArray bytes = port_->readAll();
  if (!bytes.isEmpty() && received) {
    received({reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())});
  }
}

void QtSerialDriver::lose(const std::string& reason) {
  if (!port_) {
    return;
  }
  QObject::disconnect(port_.get(), nullptr, &context_, nullptr);
  // Qt is still inside this object; it goes when that has returned. Until then it must not report again.
  port_->blockSignals(true);
  port_.release()->deleteLater();
  if (lost) {
    lost(Failure(failure_number::kPortGone, "Serial port " + name_ + " has gone: " + reason));
  }
}

}  // namespace firmlane
