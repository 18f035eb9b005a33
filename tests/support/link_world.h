// The world with the main port's link on it: commands, and the path of what is received.
#pragma once

#include "link/receive_path.h"
#include "world.h"

namespace firmlane::test {

struct LinkWorld : World {
  LinkWorld() { receivePath.FrameLength.fill(); }

  CommandSet commands{mainPort, state, frmAuto, frmVRCAuto};
  ShortDelay delay{queue, state, form1};
  ReceivePath receivePath{host, mainPort, commands, delay, state, form1, frmAuto, frmVRCAuto};
};

}  // namespace firmlane::test
