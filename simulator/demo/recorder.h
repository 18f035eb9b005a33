// What --play leaves behind: each page's text on standard output, a screenshot of it, and how fast each image went out.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/widgets/widget_screen.h"
#include "units/unit.h"

namespace firmlane::sim {

class Recorder {
 public:
  /// Times are those of the program's clock.
  Recorder(const Clock& clock, WidgetScreen& screen, std::filesystem::path directory);

  /// A page or a message with this text has come up on the topmost form.
  void page(const FormHost& host, const std::string& text);
  /// The unit has changed.
  void unitChanged(const UnitState& state);

 private:
  void tellStream(const UnitState& state, Micros span) const;

  const Clock& clock_;
  WidgetScreen& screen_;
  std::filesystem::path directory_;
  int pages_ = 0;
  Phase phase_ = Phase::Off;
  Micros streamBegan_ = 0;
};

}  // namespace firmlane::sim
