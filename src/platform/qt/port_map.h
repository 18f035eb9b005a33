// Which device a port number stands for. Users know numbers, 1 to 16; the machine knows devices.
#pragma once

#include <QSerialPortInfo>
#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace firmlane {

inline constexpr int kHighestPort = 16;

class PortMap {
 public:
  using Devices = std::map<int, std::string>;

  /// `given` names the device of each number; once one is given, numbers not in it have no hardware. With none given, a link
  /// ports/comN in `directory` decides, and numbers without a link stand for the machine's own serial devices in natural order,
  /// USB adapters first. On Windows number N is COMN.
  explicit PortMap(std::filesystem::path directory, Devices given = {})
      : directory_(std::move(directory)), given_(std::move(given)) {}

  /// The device of a number as the system opens it (a path, or COMN); empty when there is no hardware behind it.
  [[nodiscard]] std::string device(int number) const;

  /// A hint for the user beside the number, such as "ttyUSB0, USB Serial", with a remark when the user may not use the device;
  /// empty when there is no hardware behind it.
  [[nodiscard]] std::string hint(int number) const;

 private:
  /// Of a number when none was given.
  [[nodiscard]] std::string ownDevice(int number) const;
  [[nodiscard]] std::string description(const std::string& name) const;
  [[nodiscard]] const std::vector<QSerialPortInfo>& machineDevices() const;

  std::filesystem::path directory_;
  Devices given_;
  // The machine's devices as they were a moment ago: a search and the port window ask for all numbers at once.
  mutable std::vector<QSerialPortInfo> machine_;
  mutable std::chrono::steady_clock::time_point freshUntil_;
};

/// Whether `a` stands before `b` when numbers in names count as numbers: ttyS2 before ttyS10.
bool naturallyBefore(const std::string& a, const std::string& b);

}  // namespace firmlane
