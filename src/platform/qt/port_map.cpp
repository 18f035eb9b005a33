#include "platform/qt/port_map.h"

#include <algorithm>
#include <system_error>

#include "platform/qt/qt_text.h"

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace firmlane {

namespace fs = std::filesystem;

namespace {

constexpr auto kFresh = std::chrono::milliseconds(500);

bool standsBefore(const QSerialPortInfo& a, const QSerialPortInfo& b) {
  if (a.hasVendorIdentifier() != b.hasVendorIdentifier()) {
    return a.hasVendorIdentifier();
  }
  return naturallyBefore(fromQt(a.portName()), fromQt(b.portName()));
}

bool permitted(const std::string& path) {
#ifdef Q_OS_UNIX
  return ::access(path.c_str(), R_OK | W_OK) == 0;
#else
  return !path.empty();
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
  return machineDevice(number);
}

const std::vector<QSerialPortInfo>& PortMap::machineDevices() const {
  if (const auto now = std::chrono::steady_clock::now(); now >= freshUntil_) {
    const QList<QSerialPortInfo> available = QSerialPortInfo::availablePorts();
    machine_.assign(available.begin(), available.end());
    std::stable_sort(machine_.begin(), machine_.end(), standsBefore);
    freshUntil_ = now + kFresh;
  }
  return machine_;
}

std::string PortMap::machineDevice(int number) const {
  const std::vector<QSerialPortInfo>& devices = machineDevices();
#ifdef Q_OS_WIN
  const QString name = QStringLiteral("COM%1").arg(number);
  const bool there =
      std::any_of(devices.begin(), devices.end(), [&name](const QSerialPortInfo& info) { return info.portName() == name; });
  return there ? fromQt(name) : std::string();
#else
  const bool there = number >= 1 && number <= static_cast<int>(devices.size());
  return there ? fromQt(devices[static_cast<std::size_t>(number - 1)].systemLocation()) : std::string();
#endif
}

std::string PortMap::description(const std::string& name) const {
  const auto found = std::find_if(machineDevices().begin(), machineDevices().end(),
                                  [&name](const QSerialPortInfo& info) { return fromQt(info.portName()) == name; });
  return found == machineDevices().end() || found->description().isEmpty() ? std::string() : ", " + fromQt(found->description());
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
  return name + description(target.filename().string()) + (permitted(target.string()) ? "" : ", no permission");
}

}  // namespace firmlane
