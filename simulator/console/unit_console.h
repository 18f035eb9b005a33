// A unit worked over text lines: commands in, JSON lines out.
#pragma once

#include <QJsonObject>
#include <functional>
#include <string>

#include "units/unit.h"

namespace firmlane::sim {

class UnitConsole {
 public:
  /// Tells `print` of everything that happens in the unit, which must outlive this.
  UnitConsole(Unit& unit, std::function<void(const QJsonObject&)> print);
  ~UnitConsole();
  UnitConsole(const UnitConsole&) = delete;
  UnitConsole& operator=(const UnitConsole&) = delete;

  /// Carries out one command line and prints its answer. False for "quit".
  bool command(const std::string& line);
  /// What can be seen of the unit.
  [[nodiscard]] QJsonObject state() const;

 private:
  std::string carryOut(const std::string& verb, const std::string& argument);

  Unit& unit_;
  std::function<void(const QJsonObject&)> print_;
};

}  // namespace firmlane::sim
