#include <optional>

#include "console/device_link.h"
#include "console/unit_bench.h"
#include "pty/pty_unit.h"

namespace firmlane::sim {

namespace {

/// A unit on its pseudo-terminal.
class PtyBench : public UnitBench {
 public:
  PtyBench(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print)
      : print_(print), unit_(*options.model, options.timeScale), link_(options.link, unit_.path()) {
    print({{"pty", QString::fromStdString(unit_.path())}, {"unit", options.model->name}});
    console_.emplace(unit_.unit, print);
    unit_.unit.faults = options.faults;
    if (!options.startsOff) {
      unit_.unit.startRunning();
    }
  }
  bool command(const std::string& line) override {
    if (line != "pull") {
      return console_->command(line);
    }
    unit_.pull();
    print_({{"ok", true}});
    return true;
  }

 private:
  std::function<void(const QJsonObject&)> print_;
  PtyUnit unit_;
  DeviceLink link_;
  std::optional<UnitConsole> console_;  // once the unit has been told of
};

}  // namespace

std::unique_ptr<UnitBench> makeUnitBench(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print) {
  return std::make_unique<PtyBench>(options, print);
}

}  // namespace firmlane::sim
