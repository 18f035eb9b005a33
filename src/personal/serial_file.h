// sn.wls: the next free serial number, four bytes, low byte first, in the current directory. It counts up before a number goes
// out, never after, so that no number can be handed out twice.
#pragma once

#include <cstdint>
#include <optional>

#include "state/form1.h"
#include "state/run_state.h"

namespace firmlane {

class SerialFile {
 public:
  static constexpr const char* kName = "sn.wls";
  /// The number of the first unit: shown while there is no file, or one that is too short to hold a number.
  static constexpr std::int32_t kFirstNumber = 1;

  SerialFile(RunState& state, Form1& form1) : state_(state), form1_(form1) {}

  // All throw Failure when the file cannot be read or written.

  /// Takes SerialNumber and FileSerial from the file and shows the number.
  void ReadSerialFile();

  /// Writes SerialNumber to the file. When this returns, the number is on the disk.
  void WriteSerialFile();

  /// Puts the number behind SerialNumber into the file if that is above FileSerial. To be called before SerialNumber goes to a
  /// unit: when the power fails from here on, the number is lost rather than used again. Throws Failure too for a number that
  /// cannot be counted up, or is negative.
  void reserve();

  /// Takes the last reservation back: no unit has taken the number.
  void giveBack();

 private:
  [[nodiscard]] static std::int32_t readNumber();
  static void write(std::int32_t number);

  RunState& state_;
  Form1& form1_;
  std::optional<std::int32_t> before_;  // what the file held before the reservation
};

}  // namespace firmlane
