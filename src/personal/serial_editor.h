// The form newserial: the number that will be programmed, as the user wants it.
#pragma once

#include <optional>

#include "personal/serial_file.h"
#include "state/small_forms.h"

namespace firmlane {

class SerialEditor {
 public:
  /// Takes the events of newserial.
  SerialEditor(SerialFile& file, RunState& state, Form1& form1, NewSerial& newserial);

  /// Shows the editor; the main form stays usable.
  void btnSerial_Click() { newserial_.Show(); }

 private:
  [[nodiscard]] std::optional<std::int32_t> entered() const;
  void step(int by);
  void take();

  SerialFile& file_;
  RunState& state_;
  Form1& form1_;
  NewSerial& newserial_;
};

}  // namespace firmlane
