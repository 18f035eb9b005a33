// The serial port as the program uses it. The rules of a slow line stand here, once: pacing of what is written, the receive
// threshold and its event, what closing does. A driver below moves the bytes: a real device, or a line in memory.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/bytes.h"
#include "platform/event_queue.h"
#include "platform/recorder.h"

namespace firmlane {

enum class Handshake { None, XonXoff, Rts };

/// How the line is set: 8 data bits, no parity, 1 stop bit, and these.
struct LineSettings {
  int baud = 9600;
  Handshake handshake = Handshake::None;
  friend bool operator==(const LineSettings&, const LineSettings&) = default;
};

/// What a serial port needs of the platform. All calls but `open` are made while it is open.
class SerialDriver {
 public:
  virtual ~SerialDriver() = default;
  /// Opens port `number` (1 to 16). Throws Failure with the platform's description and number when it is missing, in use or not
  /// permitted.
  virtual void open(int number, const LineSettings& settings) = 0;
  virtual void configure(const LineSettings& settings) = 0;
  /// Closes; nothing of the driver is called for this port until the next open.
  virtual void close() = 0;
  /// Takes all bytes, in order, at once.
  virtual void send(ByteSpan bytes) = 0;
  /// Bytes taken that are known not to have left, because the unit holds them back or the device has not come to them.
  [[nodiscard]] virtual std::size_t unsent() const = 0;
  /// Hands all that has arrived by now to `received` before it returns, also what the device or the system still holds. May find
  /// out that the device has vanished.
  virtual void fetch() = 0;
  /// Throws away all that has arrived by now.
  virtual void discard() = 0;

  /// Called by the driver outside of any handler, or inside `fetch`: bytes have arrived.
  std::function<void(ByteSpan)> received;
  /// Called by the driver outside of any handler, or inside a call of its own: the device has vanished; the driver has closed
  /// itself. The failure names the port and its device.
  std::function<void(const Failure&)> lost;
};

class SerialPort {
 public:
  SerialPort(EventQueue& queue, SerialDriver& driver, Recorder& recorder = noRecorder());
  ~SerialPort();
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

  /// Port number 1 to 16; takes effect at the next Open.
  void setNumber(int number) { number_ = number; }
  /// Settings text such as "57600,N,8,1"; of it the speed may differ. Takes effect at once. Throws Failure for any other text.
  void setSettings(const std::string& settings);
  void setHandshake(Handshake handshake);
  /// Size of the output buffer in bytes; one smaller than 64 also bounds how far writing runs ahead of the line.
  void setOutBufferSize(int bytes) { outBufferSize_ = bytes; }
  /// Number of waiting bytes from which OnComm is raised, by an arrival or by setting this; 0 for no events.
  void setReceiveThreshold(int bytes);

  [[nodiscard]] const LineSettings& lineSettings() const { return settings_; }
  [[nodiscard]] int receiveThreshold() const { return receiveThreshold_; }

  /// Opens the port; what has arrived before is thrown away, wherever it waits. Throws Failure with the platform's words when it
  /// is missing, in use, not permitted, or open already.
  void Open();
  /// Lets what was written leave the line (for at most half a second when the unit holds it back), then closes. Bytes that wait
  /// are dropped, those of a port that was lost too. Runs no handler.
  void Close();
  [[nodiscard]] bool IsOpen() const { return open_; }
  /// Throws Failure when the port is not open; for one that was lost, in words that name it and its device. For waits: a loss
  /// wakes every wait for events.
  void requireOpen() const;

  /// All that has arrived, whether or not an event has told of it; empty when the port is closed.
  Bytes Read();

  /// Hands bytes over whole and in order. Waits, passing events, while more than a small backlog is ahead of the line or the
  /// unit holds the line back; so when it returns the bytes are as good as sent. Throws Failure when the port is or gets closed,
  /// and when the unit has held the line back for a minute without taking a byte.
  void Write(ByteSpan bytes);
  void Write(std::initializer_list<std::uint8_t> bytes) { Write(ByteSpan(bytes.begin(), bytes.size())); }

  /// Receive event: at least as many bytes as the threshold wait.
  std::function<void()> OnComm;

 private:
  void take(ByteSpan bytes);
  void openDriver();
  void lose(const Failure& failure);
  void raiseIfReached();
  [[nodiscard]] bool thresholdReached() const;
  void drain();
  void waitForRoom(std::size_t count);
  void waitWhileHeldBack(std::size_t limit);
  void apply(const LineSettings& settings);
  [[nodiscard]] Micros byteTime() const;
  [[nodiscard]] std::size_t backlogLimit() const;

  EventQueue& queue_;
  SerialDriver& driver_;
  Recorder& recorder_;
  EventSlot receiveEvent_;
  int number_ = 1;
  LineSettings settings_;
  int outBufferSize_ = 512;
  int receiveThreshold_ = 0;
  bool open_ = false;
  std::optional<Failure> lost_;
  Bytes waiting_;
  Micros lineFreeAt_ = 0;  // when the last byte written will have left at the set speed
};

}  // namespace firmlane
