// A real serial device through Qt. It moves bytes and tells of loss; pacing and events are the business of SerialPort.
#pragma once

#include <QObject>
#include <QSerialPort>
#include <memory>

#include "platform/qt/port_map.h"
#include "platform/serial_port.h"

namespace firmlane {

class QtSerialDriver : public SerialDriver {
 public:
  explicit QtSerialDriver(const PortMap& ports) : ports_(ports) {}
  ~QtSerialDriver() override;
  QtSerialDriver(const QtSerialDriver&) = delete;
  QtSerialDriver& operator=(const QtSerialDriver&) = delete;

  /// Opens the device that the number stands for. Fails with the system's number and words that help: the device, and for a
  /// missing permission the group that owns it.
  void open(int number, const LineSettings& settings) override;
  void configure(const LineSettings& settings) override;
  /// Returns when what the device still holds has left, but after a tenth of a second at the latest; what is then held back by
  /// handshake is given up, since a system would otherwise wait for it up to half a minute.
  void close() override;
  void send(ByteSpan bytes) override;
  [[nodiscard]] std::size_t unsent() const override;
  void fetch() override;
  void discard() override;

 private:
  void takeBytes();
  void lose(const std::string& reason);
  [[nodiscard]] std::size_t heldByDevice() const;

  const PortMap& ports_;
  std::unique_ptr<QSerialPort> port_;
  std::string name_;  // of the open port, for messages
  QObject context_;   // what the slots belong to; they end with the driver
};

}  // namespace firmlane
