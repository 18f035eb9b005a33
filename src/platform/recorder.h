// Who is told, as it happens, of what a customer would have to tell the maker when something went wrong: what stands on the
// screen, what the user does, what goes over the line, what comes over the web, which files are met. The serial port, the form
// host, the HTTP client and the files report to it; nothing in the program reads it, and it changes nothing.
#pragma once

#include <string>

#include "platform/bytes.h"
#include "platform/failure.h"

namespace firmlane {

class Control;
class Form;
enum class MessageButton;
struct LineSettings;
struct MessageBox;

/// Each call does nothing unless somebody keeps it. None of them throws, runs a handler or takes measurable time.
class Recorder {
 public:
  Recorder() = default;
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  virtual ~Recorder() = default;

  // The line. `port` is the number, 1 to 16.
  virtual void portOpened(int /*port*/, const LineSettings& /*settings*/) {}
  virtual void portRefused(int /*port*/, const Failure& /*failure*/) {}
  /// Settings of a port that is open have changed.
  virtual void portSet(int /*port*/, const LineSettings& /*settings*/) {}
  virtual void portClosed(int /*port*/) {}
  /// The device has gone while the port was open.
  virtual void portLost(int /*port*/, const Failure& /*failure*/) {}
  virtual void sent(int /*port*/, ByteSpan /*bytes*/) {}
  virtual void heard(int /*port*/, ByteSpan /*bytes*/) {}

  // The screen.
  virtual void formShown(const Form& /*form*/, bool /*modal*/) {}
  virtual void formHidden(const Form& /*form*/) {}
  virtual void formUnloaded(const Form& /*form*/) {}
  virtual void controlChanged(const Control& /*control*/) {}
  virtual void boxShown(const MessageBox& /*box*/) {}

  // The user. An action is told when it runs, right before its handler.
  virtual void boxAnswered(MessageButton /*button*/) {}
  virtual void clicked(const Control& /*control*/) {}
  virtual void chosen(const Control& /*list*/, int /*line*/) {}
  virtual void typed(const Control& /*box*/, const std::string& /*text*/) {}
  virtual void closed(const Form& /*form*/) {}

  // The web. One request is under way at a time; a new one drops the one before.
  virtual void requested(const std::string& /*url*/) {}
  /// An answer has come in full. `status` is 0 where it is not known; `statedLength` is the server's header, empty without one.
  virtual void answered(int /*status*/, const std::string& /*statedLength*/) {}
  /// The program has taken the next bytes of the body; none at its end.
  virtual void bodyTaken(ByteSpan /*bytes*/) {}
  virtual void requestFailed(const Failure& /*failure*/) {}
  virtual void requestDropped() {}

  /// The program turns to a file of its directory, which may be missing: to read it, or to write it anew.
  virtual void fileMet(const std::string& /*path*/) {}
};

/// Keeps nothing.
inline Recorder& noRecorder() {
  static Recorder none;
  return none;
}

}  // namespace firmlane
