#include "state/frm_port.h"

namespace firmlane {

FrmPort::FrmPort(FormHost& host) : Form(host, "frmPort", "Com Port Selection") {
  for (int port = 1; port <= kPortCount; ++port) {
    Option1.add(*this, "Option1", "COM " + std::to_string(port), Option1.group).hiddenAtStart();
  }
  Option1(0).Value.setAtStart(true);
  Label1.hiddenAtStart();
  Command1.hiddenAtStart();
  Width.setAtStart(5400);
  Height.setAtStart(2400);
}

}  // namespace firmlane
