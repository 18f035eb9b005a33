// The serial number procedure: the dialogue of Next clicks on page 7 of the wizard, and the programming that ends it.
#pragma once

#include "personal/factory_line.h"
#include "personal/serial_file.h"
#include "state/small_forms.h"

namespace firmlane {

class SerialNumber {
 public:
  SerialNumber(FormHost& host, SerialPort& port, CommandSet& commands, ReceivePath& receivePath, UnitAnswer& answer,
               SerialFile& file, Preset& preset, FactoryLine& line, RunState& state, Form1& form1, NewSerial& newserial);

  /// Starts a run that programs the serial number alone, on port 2 of the factory's computers. Does nothing while another run has
  /// the line.
  void btnSN_Click();

  /// The dialogue. Called with SerialStep at 1; stays while later Next clicks move SerialStep on. Throws Failure when the port or
  /// the number file fails; Next then starts it anew.
  void DoSerialNumber();

  /// Programs SerialNumber, counts up, has the unit load preset 0. A unit that stays silent for 10 s, and a user who will not try
  /// again, end the procedure. Throws Failure when the port or the number file fails.
  void ProgramSerialNum();

 private:
  void confirmPower();
  void confirmNumber();
  void awaitNumber();
  void chooseModel();
  void waitWhileStep(int step);
  bool storeInUnit();
  void takeNumber();
  bool sendAndWait();
  void sendNumber();
  [[nodiscard]] bool stored() const;
  void tellReadBack();
  [[nodiscard]] std::string whyNotStored() const;
  void giveUp(const std::string& verdict);
  void recover();

  FormHost& host_;
  SerialPort& port_;
  CommandSet& commands_;
  ReceivePath& receivePath_;
  UnitAnswer& answer_;
  SerialFile& file_;
  Preset& preset_;
  FactoryLine& line_;
  RunState& state_;
  Form1& form1_;
  NewSerial& newserial_;
  bool numberOut_ = false;  // the number has gone out to a unit, and may be in it
};

}  // namespace firmlane
