// What a script can read: properties of forms and controls and fields of the run state, by their path.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "platform/console/json_text.h"
#include "platform/screen.h"

namespace firmlane {

class Paths {
 public:
  Paths(const FormHost& host, const RunState& state) : host_(host), state_(state) {}

  /// A value, or why there is none: "no such control" or "no such field".
  struct Reading {
    std::optional<Json> value;
    std::string error;
  };
  /// FORM.PROPERTY, FORM.CONTROL.PROPERTY, RunState.FIELD; FORM.CONTROL alone gives all properties of the control.
  [[nodiscard]] Reading read(const std::string& path) const;

  [[nodiscard]] Control* control(const std::string& path) const;
  [[nodiscard]] Form* form(const std::string& name) const { return host_.form(name); }
  [[nodiscard]] static Json dump(const Form& form);

 private:
  const FormHost& host_;
  const RunState& state_;
};

}  // namespace firmlane
