#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <QFileInfo>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "platform/failure.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/serial_device.h"

namespace firmlane::serial_device {

const int kMissing = ENOENT;
const int kBusy = EBUSY;
const int kOther = EIO;

/// What the system would refuse is told before Qt is asked: Qt has one error for "not permitted" and "in use".
QString nameToOpen(const std::string& port, const QString& device) {
  const QFileInfo info(device);
  if (!info.exists()) {
    throw Failure(kMissing, "There is no serial port " + port);
  }
  if (::access(info.filePath().toLocal8Bit().constData(), R_OK | W_OK) != 0) {
    const QString group = info.group();
    const std::string help = ". It belongs to the group " + fromQt(group) + "; your user has to be a member of it";
    throw Failure(EACCES, "No permission to use " + port + (group.isEmpty() ? std::string() : help));
  }
  return info.canonicalFilePath();  // so that two links to one device meet in one lock
}

void begin(QSerialPort& port) {
  port.clearError();  // of modem lines that a pseudo-terminal does not have
}

/// Qt's notifiers would cost a pass of the event loop for each byte of a stream.
std::size_t sendNow(QSerialPort& port, ByteSpan bytes, std::string& reason) {
  if (port.bytesToWrite() > 0) {
    return 0;
  }
  const ssize_t taken = ::write(port.handle(), bytes.data(), bytes.size());
  if (taken >= 0) {
    return static_cast<std::size_t>(taken);
  }
  if (errno != EAGAIN && errno != EINTR) {
    reason = std::strerror(errno);
  }
  return 0;
}

std::size_t held(const QSerialPort& port) {
  int count = 0;
  const bool told = ::ioctl(port.handle(), TIOCOUTQ, &count) == 0 && count > 0;
  return told ? static_cast<std::size_t>(count) : 0;
}

void letLeave(QSerialPort& port) {
  port.flush();
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void waitForTransmitter(const QSerialPort& port) { ::tcdrain(port.handle()); }

bool hasGone(const QSerialPort& /*port*/, QSerialPort::SerialPortError error) {
  return error == QSerialPort::ResourceError || error == QSerialPort::WriteError || error == QSerialPort::ReadError;
}

}  // namespace firmlane::serial_device
