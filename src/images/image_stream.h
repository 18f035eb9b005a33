// What the streams of all images have in common: how one begins and ends on the screen and for the timers. The bytes are the
// senders' business.
#pragma once

#include "platform/screen.h"
#include "progress/supervision.h"

namespace firmlane {

class ImageStream {
 public:
  ImageStream(FormHost& host, Supervision& supervision, const WizardInCharge& wizard, Form1& form1)
      : host_(host), supervision_(supervision), wizard_(wizard), form1_(form1) {}

  /// A stream of `total` bytes (of a front panel, digits) begins that no limit watches: Watchdog is off from here on.
  void beginUnwatched(std::int32_t total);

  /// The image is out. The unit has `verdictLimit` ticks of Watchdog, where that is on.
  void end(int verdictLimit);

  /// The one error exit of every stream: tells the user that it has ended early. Sending and the timers stay as they are. A port
  /// that has gone is thrown on: it is no file that does not open, and the run names it.
  void tellFailed(const Failure& failure);

 private:
  FormHost& host_;
  Supervision& supervision_;
  const WizardInCharge& wizard_;
  Form1& form1_;
};

}  // namespace firmlane
