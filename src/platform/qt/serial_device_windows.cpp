#include <QSerialPortInfo>
#include <algorithm>

#include "platform/qt/serial_device.h"
#include "platform/win32.h"

namespace firmlane::serial_device {

const int kMissing = ERROR_FILE_NOT_FOUND;
const int kBusy = ERROR_ACCESS_DENIED;  // the system opens a port to one program at a time, and needs no permission
const int kOther = ERROR_GEN_FAILURE;

QString nameToOpen(const std::string& /*port*/, const QString& device) { return device; }

/// Elsewhere opening raises these lines; some adapters take their power from them.
void begin(QSerialPort& port) {
  port.setDataTerminalReady(true);
  if (port.flowControl() != QSerialPort::HardwareControl) {
    port.setRequestToSend(true);
  }
  port.clearError();  // of lines that the device does not have
}

/// Qt alone may write: its writes overlap, and the system would mix others with them. They go out at once.
std::size_t sendNow(QSerialPort& port, ByteSpan bytes, std::string& /*reason*/) {
  port.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  port.flush();
  return bytes.size();
}

std::size_t held(const QSerialPort& port) {
  DWORD errors = 0;
  COMSTAT status{};
  if (port.bytesToWrite() > 0 || ::ClearCommError(port.handle(), &errors, &status) == 0) {
    return 0;  // Qt counts what it has handed over until it has left
  }
  return status.cbOutQue;
}

void letLeave(QSerialPort& port) {
  if (!port.waitForBytesWritten(1) && port.error() == QSerialPort::TimeoutError) {
    port.clearError();
  }
}

void waitForTransmitter(const QSerialPort& port) { ::FlushFileBuffers(port.handle()); }

/// Drivers have many errors for an adapter that was pulled, and Qt knows a few of them. The system's list of ports knows for
/// sure.
bool hasGone(const QSerialPort& port, QSerialPort::SerialPortError error) {
  if (error == QSerialPort::ResourceError || error == QSerialPort::WriteError || error == QSerialPort::ReadError) {
    return true;
  }
  const QList<QSerialPortInfo> present = QSerialPortInfo::availablePorts();
  return error == QSerialPort::UnknownError && std::none_of(present.begin(), present.end(), [&port](const QSerialPortInfo& info) {
           return info.portName() == port.portName();
         });
}

}  // namespace firmlane::serial_device
