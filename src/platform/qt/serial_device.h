// What a serial device is to the system, as far as Qt leaves it to whoever uses one.
#pragma once

#include <QSerialPort>
#include <string>

#include "platform/bytes.h"

namespace firmlane::serial_device {

// The system's numbers for a port that is not there, that somebody uses, and for anything else that keeps it from opening.
extern const int kMissing;
extern const int kBusy;
extern const int kOther;

/// The one name by which all who open a device meet. Throws Failure for a device that is not there or not permitted, as far as
/// that shows before it is opened; `port` is its name for the user.
QString nameToOpen(const std::string& port, const QString& device);

/// Sets a device that has just been opened up.
void begin(QSerialPort& port);

/// Hands bytes over to leave at once, past Qt's own buffer where the system allows that. Returns how many were taken; with
/// `reason` set the device takes no more at all.
std::size_t sendNow(QSerialPort& port, ByteSpan bytes, std::string& reason);

/// Bytes that have left Qt and not the device.
std::size_t held(const QSerialPort& port);

/// Gives what Qt holds a millisecond to leave.
void letLeave(QSerialPort& port);

/// Closing sets the device back to the speed it had before, which would strike the last bytes in its own transmitter.
void waitForTransmitter(const QSerialPort& port);

/// Whether an error says that the device has gone for good.
bool hasGone(const QSerialPort& port, QSerialPort::SerialPortError error);

}  // namespace firmlane::serial_device
