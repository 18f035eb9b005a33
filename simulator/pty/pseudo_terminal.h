// A pseudo-terminal seen from its far end: the device that programs open as a serial port is its other side. What a program sets
// there (speed, handshake, open or closed) can be read here.
#pragma once

#include <optional>
#include <string>

#include "platform/serial_port.h"

namespace firmlane::sim {

class PseudoTerminal {
 public:
  /// Makes a new pseudo-terminal, at 9600 without handshake and closed. Throws Failure when the system has none left.
  PseudoTerminal();
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// The device for the program, such as "/dev/pts/3".
  [[nodiscard]] const std::string& path() const { return path_; }
  /// For notifiers: becomes readable when bytes have come, and stays so while no program has the device open.
  [[nodiscard]] int descriptor() const { return descriptor_; }

  /// Whether a program has the device open.
  [[nodiscard]] bool isOpen() const;
  /// How the device is set, or was when it was closed.
  [[nodiscard]] LineSettings settings() const;
  /// What has come; empty when nothing has. Does not wait.
  Bytes read();
  /// Hands bytes to the program. What the system has no room for is lost, as on a line that nobody reads.
  void write(ByteSpan bytes);
  /// Takes the device away, as a pulled adapter does: the program that has it open loses it, and no other opens it.
  void vanish();
  /// Throws away what the program left unread when it closed the device; the system would hand it to the next one.
  void discardUnread();

 private:
  int descriptor_ = -1;
  std::string path_;
};

}  // namespace firmlane::sim
