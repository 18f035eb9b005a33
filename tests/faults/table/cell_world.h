// The whole program in virtual time, with a set on disk, a unit on port 3 and an owner who works it: what a cell is played
// in.
#pragma once

#include <memory>

#include "cell.h"
#include "owner.h"
#include "releases.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

class CellWorld : public Ground {
 public:
  explicit CellWorld(const Run& run);
  ~CellWorld();
  CellWorld(const CellWorld&) = delete;
  CellWorld& operator=(const CellWorld&) = delete;

  const Run& run_;
  VirtualWire& wire = wires.add(3);
  sim::VirtualUnit bench;
  Owner owner;
  std::unique_ptr<Program> program;

  /// Starts the program, or starts it anew.
  void start();
  /// Passes events until an exception ends that, and lets `look` look around a few times a second of virtual time.
  void live(const std::function<void()>& look);
  /// Nothing runs and nothing is asked: the program waits for the user to press something.
  [[nodiscard]] bool atRest() const { return restfulLooks_ >= kRestfulLooks; }

  [[nodiscard]] const RunState& state() const { return program->state(); }
  [[nodiscard]] const sim::UnitState& unit() const { return bench.unit.state(); }
  /// Every processor runs the set on disk.
  [[nodiscard]] bool unitIsGood() const;
  /// The program says that the procedure is over and went well.
  [[nodiscard]] bool saysSuccess() const;
  /// The label that tells how something ended.
  [[nodiscard]] const OutcomeLabel& outcomeLabel() const;
  /// Sub-code with which the run's processor announces itself.
  [[nodiscard]] int announcement() const;

 private:
  static constexpr int kRestfulLooks = 4;

  void scheduleLook();
  [[nodiscard]] sim::Version wanted(std::string_view processor) const;

  std::filesystem::path before_ = std::filesystem::current_path();
  std::function<void()> look_;
  int life_ = 0;
  int turns_ = 0;
  int turnsSeen_ = 0;
  int restfulLooks_ = 0;
};

}  // namespace firmlane::test
