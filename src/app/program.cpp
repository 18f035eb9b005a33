#include "app/program.h"

#include "progress/supervision.h"
#include "state/frm_port.h"
#include "state/frm_version.h"
#include "state/small_forms.h"

namespace firmlane {

struct Program::Parts {
  Parts(const Platform& platform, const BuildSwitches& buildSwitches)
      : queue(platform.queue),
        switches(buildSwitches),
        host(platform.queue, platform.screen),
        mainPort(platform.queue, platform.mainDriver),
        versionPort(platform.queue, platform.versionDriver) {}

  EventQueue& queue;
  BuildSwitches switches;
  FormHost host;
  SerialPort mainPort;
  SerialPort versionPort;
  RunState state;
  Form1 form1{host};
  FrmPort frmPort{host};
  FrmVersion frmVersion{host};
  FrmAuto frmAuto{host};
  FrmVRCAuto frmVRCAuto{host};
  FrmRecover frmRecover{host};
  FrmAbout frmAbout{host};
  FrmInHouse frmInHouse{host};
  FrmDBUG frmDBUG{host};
  NewSerial newserial{host};
  WizardInCharge wizard{state, form1, frmAuto, frmVRCAuto};
  Supervision supervision{queue, state, form1, wizard};
};

Program::Program(const Platform& platform, const BuildSwitches& switches) : parts_(std::make_unique<Parts>(platform, switches)) {}

Program::~Program() = default;

FormHost& Program::host() { return parts_->host; }

const RunState& Program::state() const { return parts_->state; }

void Program::start() { parts_->form1.Show(); }

void Program::run() {
  try {
    for (;;) {
      parts_->queue.WaitEvents();
    }
  } catch (const ProgramEnded&) {
    // The one regular end; ports and files close with their owners.
  }
}

}  // namespace firmlane
