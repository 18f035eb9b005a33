// Sends the table of microphone models to a receiver that has just started.
#pragma once

#include "personal/factory_line.h"
#include "personal/mic_file.h"
#include "platform/files.h"

namespace firmlane {

class MicModels {
 public:
  MicModels(FormHost& host, SerialPort& port, ReceivePath& receivePath, UnitAnswer& answer, Supervision& supervision,
            WizardInCharge& wizard, FactoryLine& line, const Files& files, RunState& state, Form1& form1);

  /// Makes the page and the line ready, runs ProgramMicModels and leaves the wizard where Next goes on. Tells every failure
  /// itself. Does nothing while another run has the line.
  void btnMic_Click();

  /// Waits up to 20 s for the receiver to start, again and again while the user says so, then sends the table. Returns what the
  /// page has to say when the table did not go out whole, nothing when it did. Throws Failure when the port fails.
  std::string ProgramMicModels();

  /// Sends the file at this path, each group when the one before was acknowledged. A failure is told here and ends the transfer;
  /// the groups sent so far stay in the unit. Returns whether all went out.
  bool SendMicModels(const std::string& path);

 private:
  bool connect();
  void sendTable(MicFile& file);
  void sendGroup(const MicGroup& group);
  void leaveLine();

  FormHost& host_;
  SerialPort& port_;
  ReceivePath& receivePath_;
  UnitAnswer& answer_;
  Supervision& supervision_;
  WizardInCharge& wizard_;
  FactoryLine& line_;
  const Files& files_;
  RunState& state_;
  Form1& form1_;
};

}  // namespace firmlane
