// What goes on as a script reads it: `Activity.doing`, `Activity.left`.
#pragma once

#include <functional>
#include <string>

#include "console/json.h"
#include "progress/activity.h"

namespace firmlane {

/// What reads the field of that name as often as wanted; an empty name for an object of all of them. Empty when there is no such
/// field.
std::function<Json()> activityField(const Activity& activity, const std::string& name);

}  // namespace firmlane
