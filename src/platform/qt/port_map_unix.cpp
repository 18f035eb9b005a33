#include <unistd.h>

#include <system_error>

#include "platform/qt/port_map.h"
#include "platform/qt/qt_text.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

fs::path link(const fs::path& directory, int number) { return directory / "ports" / ("com" + std::to_string(number)); }

bool permitted(const std::string& path) { return ::access(path.c_str(), R_OK | W_OK) == 0; }

}  // namespace

std::string PortMap::ownDevice(int number) const {
  const fs::path linked = link(directory_, number);
  std::error_code error;
  if (fs::is_symlink(linked, error) || fs::exists(linked, error)) {
    return linked.string();
  }
  const std::vector<QSerialPortInfo>& devices = machineDevices();
  const bool there = number >= 1 && number <= static_cast<int>(devices.size());
  return there ? fromQt(devices[static_cast<std::size_t>(number - 1)].systemLocation()) : std::string();
}

std::string PortMap::hint(int number) const {
  const std::string path = device(number);
  if (path.empty()) {
    return {};
  }
  std::error_code error;
  const fs::path target = fs::canonical(path, error);
  if (error) {
    return path == link(directory_, number).string() ? fs::read_symlink(path, error).string() : path;
  }
  const std::string name = target.parent_path() == "/dev" ? target.filename().string() : target.string();
  return name + description(target.filename().string()) + (permitted(target.string()) ? "" : ", no permission");
}

}  // namespace firmlane
