// The receive path of the main port: cuts frames out of the bytes that arrive, checks them, and turns them into effects on the
// run state. It only sets the flags that the waits elsewhere watch, and answers the announcements of boot loaders.
#pragma once

#include <array>
#include <cstdint>

#include "link/command_set.h"
#include "link/frame.h"
#include "link/frame_ring.h"
#include "link/short_delay.h"
#include "platform/bytes.h"
#include "platform/screen.h"

namespace firmlane {

struct SubCodeRule;

class ReceivePath {
 public:
  /// Takes the port's receive event.
  ReceivePath(FormHost& host, SerialPort& port, CommandSet& commands, ShortDelay& delay, RunState& state, Form1& form1,
              FrmAuto& frmAuto, FrmVRCAuto& frmVRCAuto);

  /// Runs on every receive event.
  void MSComm1_OnComm();

  /// Bytes received and not yet delivered.
  Bytes RxBuffer;
  FrameLengths FrameLength;
  /// Position from which the first ">" is searched.
  std::int16_t RxSearchStart = 1;
  std::int16_t RxEventCount = 0;
  /// Only eight-byte answers and the single byte "A" are expected.
  bool ExpectFrameEnd = false;
  /// The unit answered the start of a flash run and was answered in turn.
  bool WantAnswered = false;
  /// Result of the last flash phase.
  bool FlashSucceeded = false;
  /// The microphone run owns the link.
  bool MicMode = false;
  /// The unit confirmed the load preset command.
  bool PresetLoaded = false;
  /// Serial number that the unit reported after programming.
  std::int32_t SerialReadBack = 0;

 private:
  bool startBuffer();
  void takeOneAnswer();
  /// Looks for a frame in a working copy of RxBuffer.
  void cutFrame(Bytes work);
  /// While only short answers are expected: notes an acknowledgement (false, nothing more to do), else gives up the first byte.
  bool dropFirstByte(Bytes& work);
  void dropToFrameStart(Bytes& work);
  void showWork(const Bytes& work, std::int16_t end);
  void deliver();
  void GetMsg();
  void act(const SubCodeRule& rule, const Bytes& message);
  void answer(const SubCodeRule& rule);

  FormHost& host_;
  SerialPort& port_;
  CommandSet& commands_;
  ShortDelay& delay_;
  RunState& state_;
  Form1& form1_;
  FrmAuto& frmAuto_;
  FrmVRCAuto& frmVRCAuto_;
  std::array<Bytes, kRingSlots> RxQueue_;
  std::int16_t RxQueueWrite_ = 0;
  std::int16_t RxQueueRead_ = 0;
};

}  // namespace firmlane
