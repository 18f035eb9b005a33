// Start and end of the program as Form1 sees them: the welcome page, the choice of product, the question before quitting.
#pragma once

#include <functional>

#include "link/receive_path.h"
#include "platform/screen.h"
#include "platform/serial_port.h"
#include "state/run_state.h"
#include "state/small_forms.h"

namespace firmlane {

class StartUp {
 public:
  /// Ties the start events of Form1: load, unload, product buttons.
  StartUp(FormHost& host, SerialPort& port, ReceivePath& receive, RunState& state, Form1& form1, FrmInHouse& frmInHouse,
          const BuildSwitches& switches);

 private:
  struct Product;
  static const Product kProducts[];

  void Form_Load();
  void Form_QueryUnload(bool& cancel);
  void choose(const Product& product);
  void SetupLCD() {}  // the units' displays need nothing at start

  FormHost& host_;
  SerialPort& port_;
  ReceivePath& receive_;
  RunState& state_;
  Form1& form1_;
  FrmInHouse& frmInHouse_;
  BuildSwitches switches_;
};

}  // namespace firmlane
