// What screen readers and other tools are told of those widgets that Qt knows nothing of, and how they work them.
#pragma once

namespace firmlane {

/// A widget with this property set is told as a group of what stands in it.
inline constexpr const char* kGroupProperty = "firmlaneGroup";

/// From now on all widgets of the application tell of themselves. More than one call does no more than one.
void useAccessibleWidgets();

}  // namespace firmlane
