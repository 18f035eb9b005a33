#include "state/small_forms.h"

namespace firmlane {

FrmInHouse::FrmInHouse(FormHost& host) : Form(host, "frmInHouse", "Internal Options ") {
  for (const char* caption : {"Hub", "DSP", "RF1", "RF2", "Front", "Serial Number"}) {
    optUP.add(*this, "optUP", caption, optUP.group);
  }
}

}  // namespace firmlane
