// What --play leaves behind: on standard output each page's text, what goes on as it changes and how fast each image went out,
// and a screenshot of each page.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/widgets/widget_screen.h"
#include "progress/activity.h"
#include "units/unit.h"

namespace firmlane::sim {

class Recorder {
 public:
  /// Times are those of the program's clock.
  Recorder(Activity& activity, WidgetScreen& screen, std::filesystem::path directory);

  /// A page or a message with this text has come up on the topmost form.
  void page(const FormHost& host, const std::string& text);
  /// The unit has changed.
  void unitChanged(const UnitState& state);

 private:
  void activityChanged();
  void tellStream(const UnitState& state, Micros span) const;

  const Activity& activity_;
  WidgetScreen& screen_;
  std::filesystem::path directory_;
  int pages_ = 0;
  Phase phase_ = Phase::Off;
  Micros streamBegan_ = 0;
  std::string told_;
  std::shared_ptr<void> listening_;
};

}  // namespace firmlane::sim
