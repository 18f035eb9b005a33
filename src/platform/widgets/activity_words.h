// What goes on in words for the user, and what there is to draw of it.
#pragma once

#include <QString>

#include "progress/activity.h"

namespace firmlane {

struct ActivityWords {
  /// What is waited for or done; empty when nothing is.
  QString title;
  /// How far it has come; empty while that is not known.
  QString detail;
  /// What the user must not do meanwhile; empty when there is no such thing.
  QString warning;
  /// So much of the ring stands, 0 to 1; below 0 when there is nothing to measure and it turns.
  double share = -1;
  /// In the middle of the ring.
  QString middle;
  /// The unit's power switch is what the program waits for.
  bool powerSwitch = false;
};

ActivityWords wordsFor(const Activity& activity);

}  // namespace firmlane
