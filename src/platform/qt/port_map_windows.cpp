// The numbers are the system's own here. A file ports\com3 would be no link but the port itself: the name means that in any
// folder.
#include <algorithm>

#include "platform/qt/port_map.h"
#include "platform/qt/qt_text.h"

namespace firmlane {

std::string PortMap::ownDevice(int number) const {
  const QString name = QStringLiteral("COM%1").arg(number);
  const std::vector<QSerialPortInfo>& devices = machineDevices();
  const bool there =
      std::any_of(devices.begin(), devices.end(), [&name](const QSerialPortInfo& info) { return info.portName() == name; });
  return there ? fromQt(name) : std::string();
}

std::string PortMap::hint(int number) const {
  const std::string name = device(number);
  return name.empty() ? name : name + description(name);
}

}  // namespace firmlane
