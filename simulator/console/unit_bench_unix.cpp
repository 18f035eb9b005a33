#include <filesystem>
#include <optional>

#include "console/unit_bench.h"
#include "pty/pty_unit.h"

namespace firmlane::sim {

namespace {

/// A symbolic link that stands as long as the simulator runs.
class Link {
 public:
  Link(const std::string& path, const std::string& target) : path_(path) {
    if (path_.empty()) {
      return;
    }
    if (std::filesystem::is_symlink(path_)) {
      std::filesystem::remove(path_);
    }
    std::filesystem::create_symlink(target, path_);
  }
  ~Link() {
    std::error_code error;
    if (!path_.empty()) {
      std::filesystem::remove(path_, error);
    }
  }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

 private:
  std::string path_;
};

/// A unit on its pseudo-terminal.
class PtyBench : public UnitBench {
 public:
  PtyBench(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print)
      : unit_(*options.model, options.timeScale), link_(options.link, unit_.path()) {
    print({{"pty", QString::fromStdString(unit_.path())}, {"unit", options.model->name}});
    console_.emplace(unit_.unit, print);
    unit_.unit.faults = options.faults;
    if (!options.startsOff) {
      unit_.unit.startRunning();
    }
  }
  bool command(const std::string& line) override { return console_->command(line); }

 private:
  PtyUnit unit_;
  Link link_;
  std::optional<UnitConsole> console_;  // once the unit has been told of
};

}  // namespace

std::unique_ptr<UnitBench> makeUnitBench(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print) {
  return std::make_unique<PtyBench>(options, print);
}

}  // namespace firmlane::sim
