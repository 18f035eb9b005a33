// sn.wls: the next free serial number, four bytes, low byte first, in the current directory. It counts up before a number goes
// out, never after, so that no number can be handed out twice, by this station or by another one that shares the file.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/file_lock.h"
#include "platform/files.h"
#include "state/file_names.h"
#include "state/form1.h"
#include "state/run_state.h"

namespace firmlane {

class SerialFile {
 public:
  static constexpr const char* kName = file_name::kSerialNumber;
  /// The number of the first unit: shown while there is no file, or one that is too short to hold a number.
  static constexpr std::int32_t kFirstNumber = 1;
  /// A receiver takes six digits; with more than that it can never report the number that was meant.
  static constexpr std::int32_t kHighestNumber = 999'999;

  SerialFile(const Files& files, RunState& state, Form1& form1) : files_(files), state_(state), form1_(form1) {}

  /// Whether a receiver can have this number.
  [[nodiscard]] static bool fits(std::int32_t number) { return number >= 0 && number <= kHighestNumber; }
  /// Why it cannot.
  [[nodiscard]] static std::string whyUnfit(std::int32_t number);

  // All of these throw Failure when the file cannot be read or written, or when another station keeps it locked for 5 s.

  /// Takes SerialNumber and FileSerial from the file and shows the number.
  void ReadSerialFile();

  /// Has the file go on from SerialNumber. It never goes back behind a number that another station has counted to; behind one
  /// that was itself only written here it does. When this returns, the number is on the disk.
  void WriteSerialFile();

  /// Takes a number for a unit: what the file holds by now, or SerialNumber if that is higher, becomes SerialNumber, and the one
  /// behind it goes into the file. A SerialNumber below FileSerial is the user's own choice, and the file stays. To be called
  /// before the number goes to a unit: when the power fails from here on, it is lost rather than used again. Throws Failure too
  /// for a number that does not fit.
  void reserve();

  /// Takes the last reservation back, for a number that cannot have reached a unit. Where another station has counted on
  /// meanwhile, or the file fails, the number is skipped.
  void giveBack();

 private:
  /// A step that this station has made in the file.
  struct Step {
    std::int32_t from;
    std::int32_t to;
  };

  [[nodiscard]] FileLock lock() const;
  void write(std::int32_t number) const;
  void show();

  const Files& files_;
  RunState& state_;
  Form1& form1_;
  std::optional<Step> edited_;
  std::optional<Step> reserved_;
};

}  // namespace firmlane
