#include "wizard/auto/unit_reading.h"

namespace firmlane {

namespace {
constexpr int kReadLimit = 30'000;  // ms
// The bar of the reading counts passes of an idle event loop, one in 20 us, in sweeps of a million. To count them by the clock
// and look ten times a second shows the same and leaves the processor alone.
constexpr Micros kPass = 20;
constexpr Micros kSweep = 1'000'000;
constexpr Micros kPassesPerPart = 10'000;
constexpr Micros kBarRest = 100 * kMillisecond;
}  // namespace

UnitReading::Outcome UnitReading::readUnit() {
  for (;;) {
    form_.btnBack.Disable();
    form_.btnNext.Disable();
    try {
      readOnce();
    } catch (const Failure&) {
      setting_.state.PortChosen = false;
      throw;
    }
    form_.btnBack.Enable();
    form_.Progress1.Hide();
    if (setting_.state.VersionsComplete && !setting_.state.ReadTimedOut) {
      return Outcome::Read;
    }
    askUser();
    if (setting_.state.RecoverChosen) {
      return Outcome::Recover;
    }
    setting_.state.PortChosen = false;
  }
}

void UnitReading::readOnce() {
  RunState& state = setting_.state;
  // An earlier reading that ended in time has left its limit running; it must not end this one.
  form_.Watch.stop();
  state.ReadTimedOut = false;
  choosePort();
  clearFlags();
  // What the last unit was says nothing of this one, and the readout itself only ever raises these.
  state.LegacyLink = false;
  state.HasRf2 = false;
  loadVersion();
  texts_.LoadVerCheckMSG();
  form_.Progress1.Value = 0;
  form_.Progress1.Show();
  state.RecoverChosen = false;
  form_.Watch.start(kReadLimit);
  awaitVersions();
  if (product_.ignoresOldLink) {
    state.LegacyLink = false;
  }
}

void UnitReading::choosePort() {
  if (setting_.state.PortChosen) {
    return;
  }
  setting_.frmPort.ShowModal();
  if (!setting_.state.PortChosen) {
    throw Failure(failure_number::kPortNumber, "No COM port has been chosen");
  }
}

void UnitReading::loadVersion() {
  setting_.frmVersion.Unload();
  try {
    setting_.frmVersion.Load();
  } catch (const Failure&) {
    finish();
    throw;
  }
}

void UnitReading::awaitVersions() {
  EventQueue& queue = setting_.host.queue();
  Micros ReadTicks = 0;
  while (!setting_.state.VersionsComplete && !setting_.state.ReadTimedOut) {
    const Micros before = queue.now();
    queue.waitEventsUntil(before + kBarRest);
    ReadTicks = (ReadTicks + (queue.now() - before) / kPass) % kSweep;
    form_.Progress1.Value = static_cast<int>(ReadTicks / kPassesPerPart);
  }
}

void UnitReading::askUser() {
  FrmRecover& recover = setting_.frmRecover;
  recover.Load();
  recover.lblMain.Caption = product_.texts.noAnswer;
  finish();
  recover.ShowModal();
}

void UnitReading::readAgain() {
  clearFlags();
  loadVersion();
  while (!setting_.state.VersionsComplete) {
    setting_.host.queue().WaitEvents();
  }
  if (product_.ignoresOldLink) {
    setting_.state.LegacyLink = false;
  }
  setting_.state.GetVersionsSent = false;
  setting_.state.GotId = false;
}

void UnitReading::finish() {
  setting_.frmVersion.Unload();
  // The readout gives the pointer back at a tick that no longer comes.
  setting_.host.setPointer(Pointer::Normal);
}

void UnitReading::clearFlags() {
  RunState& state = setting_.state;
  state.VersionsComplete = false;
  state.SerialRead = false;
  state.GotId = false;
  state.GetVersionsSent = false;
  state.VersionsRead = false;
  state.VrcOldDsp = false;
}

void UnitReading::Watch_Timer() {
  setting_.state.ReadTimedOut = true;
  form_.Watch.stop();
}

}  // namespace firmlane
