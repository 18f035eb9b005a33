#include "platform/qt/port_map.h"

#include <algorithm>

#include "platform/qt/qt_text.h"

namespace firmlane {

namespace {

constexpr auto kFresh = std::chrono::milliseconds(500);

bool standsBefore(const QSerialPortInfo& a, const QSerialPortInfo& b) {
  if (a.hasVendorIdentifier() != b.hasVendorIdentifier()) {
    return a.hasVendorIdentifier();
  }
  return naturallyBefore(fromQt(a.portName()), fromQt(b.portName()));
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

std::string PortMap::device(int number) const {
  if (!given_.empty()) {
    const auto found = given_.find(number);
    return found == given_.end() ? std::string() : found->second;
  }
  return ownDevice(number);
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

std::string PortMap::description(const std::string& name) const {
  const auto found = std::find_if(machineDevices().begin(), machineDevices().end(),
                                  [&name](const QSerialPortInfo& info) { return fromQt(info.portName()) == name; });
  return found == machineDevices().end() || found->description().isEmpty() ? std::string() : ", " + fromQt(found->description());
}

}  // namespace firmlane
