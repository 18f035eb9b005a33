#include "wizard/auto/unit_reading.h"

#include "flash/silence_limit.h"
#include "state/tell_failure.h"

namespace firmlane {

namespace {

constexpr const char* kStillSilent =
    "Nothing has come from the unit for a minute. Please check that it is switched on and connected.\r\n"
    "If it stays silent, click Exit, start Firmlane again and choose 'Recover' when it cannot be read.";
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
    const bool tried = readOnce();
    form_.btnBack.Enable();
    form_.Progress1.Hide();
    if (!tried) {
      setting_.wizard.tellOutcome(OutcomeKind::Failure, setting_.state.ErrorText);
      setting_.state.PortChosen = false;
      return Outcome::NoPort;
    }
    if (isRead()) {
      return Outcome::Read;
    }
    askUser();
    if (setting_.state.RecoverChosen) {
      return Outcome::Recover;
    }
    setting_.state.PortChosen = false;
  }
}

/// Whether the unit could be asked; it may have stayed silent.
bool UnitReading::readOnce() {
  RunState& state = setting_.state;
  setting_.wizard.clearOutcome();  // of a reading that the user has answered with another port
  // An earlier reading that ended in time has left its limit running; it must not end this one.
  form_.Watch.stop();
  state.ReadTimedOut = false;
  if (!choosePort()) {
    return false;
  }
  clearFlags();
  // What the last unit was says nothing of this one, and the readout itself only ever raises these.
  state.LegacyLink = false;
  state.HasRf2 = false;
  if (!loadVersion()) {
    return false;
  }
  texts_.LoadVerCheckMSG();
  form_.Progress1.Value = 0;
  form_.Progress1.Show();
  state.RecoverChosen = false;
  form_.Watch.start(kReadLimit);
  awaitVersions();
  // The readout tries the speeds in turn. Which one it was at says nothing of a unit that has not answered.
  if (product_.ignoresOldLink || !isRead()) {
    state.LegacyLink = false;
  }
  return true;
}

bool UnitReading::isRead() const { return setting_.state.VersionsComplete && !setting_.state.ReadTimedOut; }

bool UnitReading::choosePort() {
  if (!setting_.state.PortChosen) {
    setting_.frmPort.ShowModal();
  }
  if (!setting_.state.PortChosen) {
    tellFailure(setting_.host, setting_.state,
                "Error opening port: ", Failure(failure_number::kPortNumber, "No COM port has been chosen"));
  }
  return setting_.state.PortChosen;
}

/// A form that cannot open its port tells so and unloads itself again.
bool UnitReading::loadVersion() {
  setting_.frmVersion.Unload();
  setting_.frmVersion.Load();
  return setting_.frmVersion.Loaded;
}

/// A readout whose clock has stopped asks no more: its port was lost, and the user knows.
bool UnitReading::stillAsking() const { return setting_.frmVersion.Timer1.enabled(); }

void UnitReading::awaitVersions() {
  const Activity::Span reading(setting_.activity, Doing::ReadingUnit, kReadLimit * kMillisecond);
  EventQueue& queue = setting_.host.queue();
  Micros ReadTicks = 0;
  while (!setting_.state.VersionsComplete && !setting_.state.ReadTimedOut && stillAsking()) {
    const Micros before = queue.now();
    queue.waitEventsUntil(before + kBarRest);
    ReadTicks = (ReadTicks + (queue.now() - before) / kPass) % kSweep;
    form_.Progress1.Value = static_cast<int>(ReadTicks / kPassesPerPart);
  }
}

void UnitReading::askUser() {
  FrmRecover& recover = setting_.frmRecover;
  setting_.wizard.tellOutcome(OutcomeKind::Failure, stillAsking() ? product_.texts.noAnswer : setting_.state.ErrorText);
  recover.Load();
  recover.lblMain.Caption = std::string(product_.texts.noAnswer) + product_.texts.recoverHint;
  finish();
  recover.ShowModal();
}

bool UnitReading::readAgain() {
  clearFlags();
  if (!loadVersion()) {
    return false;
  }
  const SilenceLimit silence(setting_.host.queue());
  bool told = false;
  while (!setting_.state.VersionsComplete) {
    if (!stillAsking()) {
      finish();
      return false;
    }
    if (!told && silence.passed()) {
      told = true;
      setting_.wizard.tellOutcome(OutcomeKind::Caution, kStillSilent);
    }
    setting_.host.queue().WaitEvents();
  }
  if (product_.ignoresOldLink) {
    setting_.state.LegacyLink = false;
  }
  setting_.state.GetVersionsSent = false;
  setting_.state.GotId = false;
  return true;
}

void UnitReading::finish() { setting_.frmVersion.Unload(); }

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
