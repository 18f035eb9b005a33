// One flash run: programs one processor from the port's opening to the unit's verdict. Watchdog gives its waits their limits; the
// receive path answers the boot loader and moves FlashPhase; a sender below streams the image. Which processor comes next is the
// wizards' business.
#pragma once

#include <functional>

#include "flash/front_panel.h"
#include "flash/outcomes.h"
#include "flash/processor_programming.h"
#include "flash/targets.h"

namespace firmlane {

class FlashRun {
 public:
  FlashRun(FormHost& host, SerialPort& port, ReceivePath& receivePath, Supervision& supervision, WizardInCharge& wizard,
           ProcessorProgramming& processors, FrontPanel& frontPanel, Outcomes& outcomes, const DebugNotes& notes, RunState& state,
           Form1& form1, FrmAuto& frmAuto)
      : host_(host),
        port_(port),
        receivePath_(receivePath),
        supervision_(supervision),
        wizard_(wizard),
        processors_(processors),
        frontPanel_(frontPanel),
        outcomes_(outcomes),
        notes_(notes),
        state_(state),
        form1_(form1),
        frmAuto_(frmAuto) {}

  /// Programs the processor FlashTarget through port ComPort, and returns when that is over in one way or other. TimedOut,
  /// FlashPhase, WizardPage and the page text tell how; the port is then closed, unless it was open before. Throws Failure when
  /// the port cannot be opened, is lost, or fails where no sender tells the user; it is closed then too.
  void ConnectVelarc();

 private:
  void runStates();
  void setUpLink();
  void openPort();

  bool awaitAnnouncement();
  void offerSecondChance();

  bool awaitErase();
  void enterErase();

  void program();
  void enterProgram();
  void sendImage(ImageRoute route);

  void awaitVerdict();
  bool awaitUnit(const std::function<bool()>& answered);
  [[nodiscard]] Micros verdictLimit() const;
  [[nodiscard]] bool succeeded() const;

  void setWizardReset(const char* text);

  FormHost& host_;
  SerialPort& port_;
  ReceivePath& receivePath_;
  Supervision& supervision_;
  WizardInCharge& wizard_;
  ProcessorProgramming& processors_;
  FrontPanel& frontPanel_;
  Outcomes& outcomes_;
  const DebugNotes& notes_;
  RunState& state_;
  Form1& form1_;
  FrmAuto& frmAuto_;
};

}  // namespace firmlane
