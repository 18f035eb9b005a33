// What "Copy details" puts on the clipboard: which program on which system, which port, what was being done, what failed and why,
// then the record. Also the head of every record that is written.
#pragma once

#include <functional>
#include <string>

#include "app/program.h"
#include "record/record.h"

namespace firmlane {

/// What a program knows of its surroundings.
struct Surroundings {
  std::string qtVersion;
  std::string system;
  /// The program's own.
  std::string directory;
  /// The device behind a port number and what it is; empty when there is none.
  std::function<std::string(int)> portHint;
};

class Details {
 public:
  /// From now on the record is told what goes on, too. Record and program outlive it.
  Details(Record& record, Program& program, Servers servers, const BuildSwitches& switches, Surroundings surroundings);
  Details(const Details&) = delete;
  Details& operator=(const Details&) = delete;
  ~Details() = default;

  /// The lines between a record's title and its entries, as of now.
  [[nodiscard]] std::string head() const;
  /// The whole text, as of now.
  [[nodiscard]] std::string text() const { return record_.text(head()); }

 private:
  void tellDoing();

  Record& record_;
  const RunState& state_;
  const Activity& activity_;
  Servers servers_;
  BuildSwitches switches_;
  Surroundings surroundings_;
  Activity::Phase told_;
  std::shared_ptr<void> listening_;
};

}  // namespace firmlane
