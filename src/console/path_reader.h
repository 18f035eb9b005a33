// Forms, controls and the shared record as a script names and reads them: `Form1.lblTop.caption`, `RunState.WizardPage`.
#pragma once

#include <functional>

#include "console/json.h"
#include "platform/screen.h"
#include "progress/activity.h"
#include "state/run_state.h"

namespace firmlane {

class PathReader {
 public:
  PathReader(const FormHost& host, const RunState& state, const Activity& activity)
      : host_(host), state_(state), activity_(activity) {}

  // All of these throw Refusal with "no such control" or "no such field" for a name that is not there.

  [[nodiscard]] Form& form(const std::string& name) const;
  /// `path` is FORM.CONTROL, an element of an array FORM.CONTROL(INDEX).
  [[nodiscard]] Control& control(const std::string& path) const;
  /// What reads the value that a path names, as often as wanted: FORM.PROPERTY, CONTROL.PROPERTY, RunState.FIELD,
  /// Activity.FIELD, or MessageBox.text and .title, empty without one; a control, a form or Activity alone for an object of all
  /// its properties.
  [[nodiscard]] std::function<Json()> find(const std::string& path) const;

  /// All controls of a form with all their properties.
  [[nodiscard]] static Json dump(const Form& form);
  /// The forms on screen, topmost first, and which of them is modal.
  [[nodiscard]] Json forms() const;

 private:
  [[nodiscard]] std::function<Json()> findField(const std::string& name) const;
  [[nodiscard]] std::function<Json()> findInBox(const std::string& name) const;

  const FormHost& host_;
  const RunState& state_;
  const Activity& activity_;
};

}  // namespace firmlane
