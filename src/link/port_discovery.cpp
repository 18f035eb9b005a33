#include "link/port_discovery.h"

#include "platform/screen.h"
#include "state/tell_failure.h"

namespace firmlane {

namespace {
constexpr int kWait = 100;          // ms
constexpr int kGrownHeight = 6000;  // twips, with the 16 options
}  // namespace

PortDiscovery::PortDiscovery(SerialPort& port, CommandSet& commands, ReceivePath& receivePath, Activity& activity,
                             RunState& state, FrmPort& frmPort)
    : port_(port), commands_(commands), receivePath_(receivePath), activity_(activity), state_(state), form_(frmPort) {
  frmPort.OnLoad = [this] { Form_Load(); };
  frmPort.OnUnload = [this] { Form_Unload(); };
  frmPort.Command1.OnClick = [this] { Command1_Click(); };
  frmPort.Command2.OnClick = [this] { AutoSearch(); };
  frmPort.Command3.OnClick = [this] { Command3_Click(); };
  frmPort.Timer1.OnTimer = [this] { form_.Timer1.stop(); };
}

void PortDiscovery::Form_Load() {
  form_.centre();
  form_.Option1(0).Value = true;
}

void PortDiscovery::Form_Unload() { endSearch(); }

void PortDiscovery::AutoSearch() {
  if (state_.PortSearching) {
    return;
  }
  state_.PortSearching = true;
  state_.PortFound = false;
  const int search = search_;
  std::int16_t found = 0;
  for (std::int16_t port = 1; port <= kPortCount && found == 0; ++port) {
    if (TestPort(port)) {
      found = port;
    }
    if (search != search_) {
      return;
    }
  }
  if (found == 0) {
    form_.host().showFailure("No valid ports with receivers connected found!");
    state_.PortSearching = false;
    return;
  }
  form_.Option1(found - 1).Value = true;
  form_.host().showMessageBox({.text = "COM" + std::to_string(found) + " found, now Connecting",
                               .title = "LWX Firmlane",
                               .icon = MessageIcon::Information});
  state_.PortSearching = false;
  Command1_Click();
}

bool PortDiscovery::TestPort(std::int16_t port) {
  const Activity::Span searching(activity_, Doing::SearchingPorts, 0, port, kPortCount);
  try {
    openForTest(port);
    commands_.SendResetLink();
    if (!wait()) {
      return false;
    }
    forgetWhatCame();
    commands_.Send_Who_is_there(kAnyAddress);
    if (!wait()) {
      return false;
    }
  } catch (const Failure&) {
    // A port that is missing, taken or pulled is one without a unit.
    port_.Close();
    return false;
  }
  port_.Close();
  return state_.PortFound;
}

void PortDiscovery::openForTest(std::int16_t port) {
  port_.Close();
  // How a flash run has ended must not have the answer thrown away.
  receivePath_.ExpectFrameEnd = false;
  state_.FlashPhase = flash_phase::kIdle;
  port_.setNumber(port);
  port_.setSettings(state_.ProductCode == "VC" ? "19200,N,8,1" : "57600,N,8,1");
  port_.setHandshake(Handshake::None);
  port_.setReceiveThreshold(1);
  port_.Open();
}

/// What came before the question, from this port or another, is no answer to it and must not stand in front of one.
void PortDiscovery::forgetWhatCame() {
  port_.Read();
  receivePath_.RxBuffer.clear();
  state_.PortFound = false;
}

bool PortDiscovery::wait() {
  const int search = search_;
  form_.Timer1.start(kWait);
  while (form_.Timer1.enabled()) {
    form_.host().queue().WaitEvents();
  }
  return search == search_;
}

void PortDiscovery::endSearch() {
  if (!state_.PortSearching) {
    return;
  }
  ++search_;
  form_.Timer1.stop();
  port_.Close();
  state_.PortSearching = false;
}

void PortDiscovery::Command1_Click() {
  endSearch();
  try {
    state_.ComPort = static_cast<std::int16_t>(form_.Option1.selected() + 1);
    port_.setNumber(state_.ComPort);
    if (!port_.IsOpen()) {
      port_.Open();
    }
    port_.Close();
  } catch (const Failure& failure) {
    port_.Close();
    tellFailure(form_.host(), state_, "Error opening port: ", failure);
    return;
  }
  state_.PortChosen = true;
  form_.Unload();
}

void PortDiscovery::Command3_Click() {
  form_.Label1.Show();
  form_.Command1.Show();
  for (int i = 0; i < form_.Option1.count(); ++i) {
    form_.Option1(i).Show();
  }
  form_.Height = kGrownHeight;
}

}  // namespace firmlane
