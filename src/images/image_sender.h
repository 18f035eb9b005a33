// Streams a firmware image to a unit, raw and without an answer in between. What a unit says to it is the flash run's business;
// so is the time that it has for that.
#pragma once

#include <string>

#include "images/image_stream.h"
#include "platform/files.h"
#include "platform/serial_port.h"

namespace firmlane {

class ImageSender {
 public:
  /// `expectFrameEnd` is the receive path's mode for eight-byte answers; DumpFile2 sets it.
  ImageSender(FormHost& host, SerialPort& port, Supervision& supervision, WizardInCharge& wizard, RunState& state, Form1& form1,
              bool& expectFrameEnd)
      : host_(host),
        port_(port),
        supervision_(supervision),
        state_(state),
        form1_(form1),
        expectFrameEnd_(expectFrameEnd),
        stream_(host, supervision, wizard, form1) {}

  // Both take a full path, need the port open, and return when the last byte has been handed to it. When the file cannot be
  // read or the port fails they tell the user and return early, with Sending and the timers as they were.

  /// Start byte, image, seven-bit sum. The older Velarc gets each image byte in two. Leaves the unit 10 ticks of Watchdog for
  /// its verdict.
  void DumpFile2(const std::string& path);
  /// The file byte for byte, under RTS handshake, for which the port is closed and opened. Leaves Watchdog off.
  void DumpFile3(const std::string& path);

 private:
  void streamWithSum(const std::string& path);
  void streamText(const std::string& path);
  void writeImageByte(std::uint8_t byte, bool sevenBit);
  void reopenUnderRts();
  void showImageOut(int verdictLimit);

  FormHost& host_;
  SerialPort& port_;
  Supervision& supervision_;
  RunState& state_;
  Form1& form1_;
  bool& expectFrameEnd_;
  ImageStream stream_;
};

}  // namespace firmlane
