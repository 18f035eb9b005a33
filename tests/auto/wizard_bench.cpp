#include "wizard_bench.h"

namespace firmlane::test {

SystemRecord system(const std::string& version, const std::string& dsp, const std::string& hub, const std::string& rf,
                    const std::string& front) {
  SystemRecord record;
  record.SystemVersion = version;
  record.ReleaseDate = "May " + version;
  record.SystemNote = "Note " + version;
  record.DspVersion = dsp;
  record.HubVersion = hub;
  record.RfVersion = rf;
  record.FrontVersion = front;
  record.SystemDir = "dir" + version;
  return record;
}

std::string shown(const AutoForm& form) {
  std::string text;
  const std::vector<std::pair<const char*, const Control*>> controls = {
      {"reset", &form.lblReset}, {"bottom", &form.lblBottom},   {"Back", &form.btnBack},     {"Next", &form.btnNext},
      {"More", &form.btnMore},   {"RelNote", &form.btnRelNote}, {"Off", &form.ChkOffline},   {"Rec", &form.chkReceiver},
      {"imgDL", &form.imgDL},    {"imgFlash", &form.imgFlash},  {"List", &form.VersionList}, {"bar", &form.Progress1},
      {"total", &form.prgTotal}, {"lblTotal", &form.lblTotal}};
  for (const auto& [name, control] : controls) {
    if (control->Visible) {
      text += (text.empty() ? "" : " ") + std::string(name) + (control->Enabled ? "" : "-");
    }
  }
  return text;
}

WizardBench::WizardBench() {
  directory.write("wls.bin", "an image");
  directory.write("vrc2.bin", "an image");
  form1.Command3.OnClick = [this] { pressNextOfForm1(); };
  frmVersion.OnLoad = [this] { loadVersion(); };
  frmPort.OnLoad = [this] {
    log.push_back("ask for port");
    after(kSecond, [this] {
      queue.post([this] {
        state.PortChosen = portChosen != 0;
        state.ComPort = static_cast<std::int16_t>(portChosen);
        frmPort.Unload();
      });
    });
  };
}

void WizardBench::open(AutoForm& form, bool wantsDownload, bool wantsUpdate) {
  form.Show();
  form.btnNext.Click();
  if (wantsDownload) {
    click(form.ChkOffline);
  }
  if (wantsUpdate) {
    click(form.chkReceiver);
  }
}

void WizardBench::click(Control& control) {
  const auto refused = host.click(control);
  if (refused) {
    throw std::runtime_error(control.name() + ": " + *refused);
  }
  queue.PumpEvents();
}

void WizardBench::clickLater(Micros span, Control& control) {
  after(span, [this, &control] { host.click(control); });
}

void WizardBench::pressNextOfForm1() {
  switch (state.WizardPage) {
    case 0:
      log.push_back("fetch " + state.ProductCode + (state.AutoDriving ? "" : ", but the form would only show the wizard"));
      state.WizardPage = 1;
      fetch();
      break;
    case 1:
    case 2:
      log.push_back("page " + std::to_string(state.WizardPage) + " product " + std::to_string(form1.Option2.selected()));
      ++state.WizardPage;
      break;
    case 6:
      log.push_back("flash " + std::to_string(form1.Option4.selected()));
      flash();
      break;
    default:
      log.push_back("page " + std::to_string(state.WizardPage) + "?");
  }
}

void WizardBench::fetch() {
  const LeavableWait::Stay stay(fetching);
  const Micros until = queue.now() + fetchTakes;
  while (!stay.left() && queue.now() < until) {
    queue.waitEventsUntil(until);
  }
  if (fetched && !stay.left()) {
    fetched();
  }
}

bool WizardBench::getFirmware() {
  log.push_back("get " + std::to_string(form1.List1.ListIndex.get()) + " of " + std::to_string(state.SelectedSystem));
  return download();
}

void WizardBench::loadVersion() {
  const bool stale =
      state.VersionsComplete || state.SerialRead || state.GotId || state.GetVersionsSent || state.VersionsRead || state.VrcOldDsp;
  log.push_back(stale ? "read with stale flags" : "read");
  if (!versionPortOpens) {
    log.push_back("no port");
    frmVersion.Unload();
    return;
  }
  frmVersion.Timer1.start(100);
  if (unit) {
    after(unitAnswersAfter, [this] {
      queue.post([this] {
        if (frmVersion.Loaded) {
          unit();
          state.SerialRead = state.GotId = state.GetVersionsSent = state.VersionsRead = state.VersionsComplete = true;
        }
      });
    });
  }
}

}  // namespace firmlane::test
