// Random runs over both auto wizards, the classic pages with their downloads, remote software and the production line. A user
// clicks whatever can be clicked, units, server and disk misbehave, the computer loses power; all from one seed.
#pragma once

#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>

#include "app/program.h"
#include "faulty_disk.h"
#include "releases.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

/// Where the user goes.
enum class Way { Wireless, Velarc2, OlderVelarc, Software, ProductionLine };

inline constexpr std::size_t kVelarcImageSize = 400;

class Wanderer : public Ground {
 public:
  Wanderer(Way way, std::uint32_t seed);
  ~Wanderer();
  Wanderer(const Wanderer&) = delete;
  Wanderer& operator=(const Wanderer&) = delete;

  /// What stands between the program and the world, for proofs that a broken part is found out. Null for the world itself.
  HttpClient* httpInstead = nullptr;
  SerialDriver* driverInstead = nullptr;

  /// Called for each life of the program, before its start; for a part of it in the place of its own.
  std::function<void(Program&)> onProgram = [](Program&) {};

  /// A counter that moves only when all is done, as if the program wrote it behind the number and not ahead of it.
  bool countsLate = false;

  /// Plays the run; the first call of anything.
  void play();
  /// What did not hold; empty when all did.
  [[nodiscard]] const std::string& fault() const { return fault_; }
  /// Whether something was brought to its end: a unit programmed, a number stored, an installer started.
  [[nodiscard]] bool reachedEnd() const { return reachedEnd_; }

 private:
  void serve();
  void offer(const std::string& url, const std::string& name, const std::string& content);
  void connectUnit();
  void live();
  void next();
  void act();
  void answerBox();
  void workPort();
  void workPower(const std::string& text);
  void workForm(Form& form);
  bool workWizard(Form& form);
  void troubleUnit();
  void troubleServer();
  void troubleDisk();
  void click(Form& form, const char* name);

  void rest();
  void checkRest();
  void checkSomethingPossible();
  void checkFiles();
  void checkVerdict(const std::string& text);
  void checkWizardsVerdict();
  [[nodiscard]] bool wizards() const { return way_ == Way::Wireless || way_ == Way::Velarc2; }
  [[nodiscard]] Line line() const { return way_ == Way::Velarc2 ? Line::Velarc2 : Line::Wireless; }
  void listen(std::uint8_t byte);
  void noteSerial(const std::string& text);
  void fail(const std::string& what);
  [[nodiscard]] std::string screenText() const;

  [[nodiscard]] bool chance(int percent) { return static_cast<int>(random_() % 100) < percent; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[random_() % std::size(list)];
  }

  Way way_;
  std::mt19937 random_;
  std::filesystem::path before_ = std::filesystem::current_path();
  std::shared_ptr<FaultyDisk> disk_ = std::make_shared<FaultyDisk>(directory.path().string());
  Files filesOnDisk_{directory.path(), noRecorder(), disk_};
  VirtualWire& wire_ = wires.add(2);
  std::unique_ptr<sim::VirtualUnit> unit_;
  std::unique_ptr<Program> program_;
  std::map<std::string, std::string> offered_;          // content by URL
  std::map<std::string, std::set<std::string>> whole_;  // what each file may hold
  std::map<std::int32_t, int> numbers_;                 // the unit that a serial number went to
  int units_ = 0;
  std::size_t wants_ = 0;  // bytes of a want-to-program heard
  Micros boxAt_ = 0;
  Micros end_ = 0;
  bool reachedEnd_ = false;
  std::string fault_;
};

}  // namespace firmlane::test
