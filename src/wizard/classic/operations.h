// What the classic wizard's pages set off in other rooms. The composition root fills it in; a test puts its own in place.
#pragma once

#include <functional>

namespace firmlane {

/// Each is called from inside Command3_Click and returns when its work is over. One that throws Failure ends the click with the
/// engine's error box.
struct ClassicOperations {
  // Update lists and downloads.
  std::function<void()> clearUrls;
  std::function<void()> GetUpdateText;
  std::function<void()> GetUpdateSOFT;
  /// One of the two is under way, and nobody has given it up.
  std::function<bool()> fetching;
  std::function<void()> GetFirmware2;
  std::function<void()> GetSoftware;
  std::function<bool()> downloadDone;
  std::function<void()> InstallSoftware;
  std::function<void()> LaunchRelNote;
  std::function<void()> RegisterUserData;

  // Flash run.
  std::function<void()> ConvertFront;
  /// Takes the image of Front A and Front B from disk; returns whether it stands ready to be sent.
  std::function<bool()> loadVelarcFront;
  /// Throws Failure when the image for FlashTarget is not on disk.
  std::function<void()> requireImage;
  std::function<void()> ConnectVelarc;

  // Factory.
  std::function<void()> DoSerialNumber;
};

}  // namespace firmlane
