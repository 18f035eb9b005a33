#include "platform/qt/port_map.h"

#include <QSerialPortInfo>
#include <algorithm>
#include <system_error>
#include <vector>

#include "platform/qt/qt_text.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

std::vector<QSerialPortInfo> machineDevices() {
  const QList<QSerialPortInfo> available = QSerialPortInfo::availablePorts();
  std::vector<QSerialPortInfo> devices(available.begin(), available.end());
  std::stable_sort(devices.begin(), devices.end(), [](const QSerialPortInfo& a, const QSerialPortInfo& b) {
    if (a.hasVendorIdentifier() != b.hasVendorIdentifier()) {
      return a.hasVendorIdentifier();
    }
    return naturallyBefore(fromQt(a.portName()), fromQt(b.portName()));
  });
  return devices;
}

std::string withDescription(const std::string& name, const QSerialPortInfo& info) {
  return info.description().isEmpty() ? name : name + ", " + fromQt(info.description());
}

QSerialPortInfo machineDevice(int number) {
#ifdef Q_OS_WIN
  return QSerialPortInfo(QStringLiteral("COM%1").arg(number));
#else
  const std::vector<QSerialPortInfo> devices = machineDevices();
  return number >= 1 && number <= static_cast<int>(devices.size()) ? devices[static_cast<std::size_t>(number - 1)]
                                                                   : QSerialPortInfo();
#endif
}

}  // namespace

bool naturallyBefore(const std::string& a, const std::string& b) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    if (!isDigit(a[i]) || !isDigit(b[j])) {
      if (a[i] != b[j]) {
        return a[i] < b[j];
      }
      ++i;
      ++j;
      continue;
    }
    const auto numberAt = [&](const std::string& text, std::size_t& at) {
      const std::size_t first = std::min(text.find_first_not_of('0', at), text.size());
      std::size_t last = first;
      while (last < text.size() && isDigit(text[last])) {
        ++last;
      }
      at = last;
      return text.substr(first, last - first);
    };
    const std::string x = numberAt(a, i);
    const std::string y = numberAt(b, j);
    if (x != y) {
      return x.size() != y.size() ? x.size() < y.size() : x < y;
    }
  }
  return a.size() - i < b.size() - j;
}

fs::path PortMap::link(int number) const { return directory_ / "ports" / ("com" + std::to_string(number)); }

std::string PortMap::device(int number) const {
  if (!given_.empty()) {
    const auto found = given_.find(number);
    return found == given_.end() ? std::string() : found->second;
  }
  std::error_code error;
  if (fs::is_symlink(link(number), error) || fs::exists(link(number), error)) {
    return link(number).string();
  }
  return fromQt(machineDevice(number).systemLocation());
}

std::string PortMap::hint(int number) const {
  const std::string path = device(number);
  if (path.empty()) {
    return {};
  }
  std::error_code error;
  const fs::path target = fs::canonical(path, error);
  if (error) {
    return path == link(number).string() ? fs::read_symlink(path, error).string() : path;
  }
  const std::string name = target.parent_path() == "/dev" ? target.filename().string() : target.string();
  return withDescription(name, QSerialPortInfo(toQt(target.filename().string())));
}

}  // namespace firmlane
