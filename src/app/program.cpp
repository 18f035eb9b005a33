#include "app/program.h"

#include "catalogue/download.h"
#include "catalogue/firmware_set.h"
#include "catalogue/list_fetch.h"
#include "catalogue/registration.h"
#include "catalogue/web_jobs.h"
#include "flash/flash_run.h"
#include "forms/about_box.h"
#include "forms/debug_view.h"
#include "forms/in_house_panel.h"
#include "images/front_image_loader.h"
#include "link/port_discovery.h"
#include "link/version_readout.h"
#include "personal/mic_models.h"
#include "personal/serial_editor.h"
#include "personal/serial_number.h"
#include "record/recorded_http.h"
#include "state/frm_port.h"
#include "state/frm_version.h"
#include "state/small_forms.h"
#include "state/tell_failure.h"
#include "wizard/auto/recovery.h"
#include "wizard/auto/velarc2.h"
#include "wizard/auto/wireless.h"
#include "wizard/classic/page_engine.h"
#include "wizard/classic/start_up.h"

namespace firmlane {

namespace {

/// The ports, the shared record and every form: what the subsystems work on.
struct Ground {
  explicit Ground(const Platform& platform)
      : queue(platform.queue),
        files(platform.files),
        host(platform.queue, platform.screen, platform.recorder),
        mainPort(platform.queue, platform.mainDriver, platform.recorder),
        versionPort(platform.queue, platform.versionDriver, platform.recorder),
        http(platform.http, platform.recorder),
        recorder(platform.recorder) {}

  EventQueue& queue;
  const Files& files;
  FirmwareSet set{files};
  FormHost host;
  SerialPort mainPort;
  SerialPort versionPort;
  RecordedHttp http;
  Recorder& recorder;
  RunState state;
  Activity activity{queue.clock()};
  Form1 form1{host};
  FrmPort frmPort{host};
  FrmVersion frmVersion{host};
  FrmAuto frmAuto{host};
  FrmVRCAuto frmVRCAuto{host};
  FrmRecover frmRecover{host};
  FrmAbout frmAbout{host};
  FrmInHouse frmInHouse{host};
  FrmDBUG frmDBUG{host};
  NewSerial newserial{host};
};

/// Everything on the serial line, and what supervises it.
struct Line {
  explicit Line(Ground& g) : ground(g) {}

  Ground& ground;
  WizardInCharge wizard{ground.state, ground.form1, ground.frmAuto, ground.frmVRCAuto};
  Supervision supervision{ground.queue, ground.state, ground.form1, wizard, ground.activity};
  CommandSet commands{ground.mainPort, ground.state, ground.frmAuto, ground.frmVRCAuto};
  ShortDelay delay{ground.queue, ground.state, ground.form1};
  ReceivePath receive{ground.host,  ground.mainPort, commands,       delay,
                      ground.state, ground.form1,    ground.frmAuto, ground.frmVRCAuto};
  PortDiscovery discovery{ground.mainPort, commands, receive, ground.activity, ground.state, ground.frmPort};
  VersionReadout readout{ground.versionPort, ground.activity, ground.state, ground.frmVersion};
};

/// Images and the run that sends them.
struct Flash {
  Flash(Ground& g, Line& l) : ground(g), line(l) {}

  Ground& ground;
  Line& line;
  DebugNotes notes{ground.state, ground.frmDBUG};
  FrontImageLoader frontImage{ground.host, ground.files, notes, ground.state, ground.form1};
  ImageSender sender{ground.host,  ground.mainPort, line.supervision,           line.wizard,
                     ground.state, ground.form1,    line.receive.ExpectFrameEnd};
  ProcessorProgramming processors{ground.files, ground.mainPort, sender,      line.supervision,
                                  line.wizard,  ground.state,    ground.form1};
  FrontPanel frontPanel{ground.host, ground.mainPort, line.delay,   line.supervision, line.wizard,
                        notes,       ground.state,    ground.form1, ground.frmAuto};
  Outcomes outcomes{ground.host, ground.mainPort, line.receive, line.wizard, notes, ground.state, ground.form1, ground.frmAuto};
  FlashRun run{ground.host, ground.mainPort, line.receive, line.supervision, line.wizard,  processors,
               frontPanel,  outcomes,        notes,        ground.state,     ground.form1, ground.frmAuto};
};

/// The maker's web server and what comes from there.
struct Catalogue {
  Catalogue(Ground& g, Line& l, const Platform& p) : ground(g), line(l), platform(p) {}

  Ground& ground;
  Line& line;
  const Platform& platform;
  ListFetch lists{ground.host,     ground.http,  ground.files, line.wizard,
                  ground.activity, ground.state, ground.form1, platform.servers.maker};
  Download download{ground.host,      ground.http, ground.files, ground.set,   lists,
                    line.supervision, line.wizard, ground.state, ground.form1, platform.servers.maker};
  Registration registration{
      ground.host, ground.http, download, line.supervision, ground.state, ground.form1, platform.servers.registration};
  WebJobs web{ground.host, platform.desktop, download, ground.state, platform.servers.maker};
};

/// The factory's procedures.
struct Personal {
  Personal(Ground& g, Line& l) : ground(g), line(l) {
    ground.form1.btnSN.OnClick = [this] { serialNumber.btnSN_Click(); };
    ground.form1.btnSerial.OnClick = [this] { editor.btnSerial_Click(); };
    ground.form1.btnMic.OnClick = [this] { micModels.btnMic_Click(); };
  }

  Ground& ground;
  Line& line;
  UnitAnswer answer{ground.host, ground.mainPort, line.supervision, ground.state, ground.form1};
  SerialFile file{ground.files, ground.state, ground.form1};
  Preset preset{ground.mainPort, line.commands, line.receive, answer, ground.state, ground.form1};
  FactoryLine factory{ground.mainPort, line.receive, preset, line.supervision, line.wizard, ground.state, ground.form1};
  SerialNumber serialNumber{ground.host, ground.mainPort, line.commands, line.receive, answer,          file,
                            preset,      factory,         ground.state,  ground.form1, ground.newserial};
  SerialEditor editor{file, ground.state, ground.form1, ground.newserial};
  MicModels micModels{ground.host, ground.mainPort, line.receive, answer,       line.supervision,
                      line.wizard, factory,         ground.files, ground.state, ground.form1};
};

}  // namespace

struct Program::Parts {
  Parts(const Platform& platform, const BuildSwitches& switches);

  void tieServiceButtons();
  [[nodiscard]] ClassicOperations classicOperations();
  [[nodiscard]] AutoWizardTies autoTies();
  [[nodiscard]] AutoWizardSetting autoSetting() {
    return {ground.host,    line.wizard,       ground.files,      ground.set,     ground.state,   ground.form1,
            ground.frmPort, ground.frmVersion, ground.frmRecover, ground.frmDBUG, ground.activity};
  }

  Ground ground;
  Line line{ground};
  Flash flash{ground, line};
  Catalogue catalogue;
  Personal personal{ground, line};
  StartUp startUp;
  PageEngine classic;
  WirelessWizard wireless;
  Velarc2Wizard velarc2;
  Recovery recovery;
  AboutBox aboutBox{ground.frmAbout, ground.form1};
  DebugView debugView{ground.frmDBUG, ground.form1};
  InHousePanel inHousePanel{[this] { wireless.UpdateReceiver(); }, ground.state, ground.form1, ground.frmAuto, ground.frmInHouse};
};

Program::Parts::Parts(const Platform& platform, const BuildSwitches& switches)
    : ground(platform),
      catalogue(ground, line, platform),
      startUp(ground.host, ground.mainPort, line.receive, ground.state, ground.form1, ground.frmInHouse, switches),
      classic(ground.host, ground.files, ground.mainPort, personal.factory, line.wizard, ground.activity, ground.state,
              ground.form1,
              {ground.frmPort, ground.frmVersion, ground.frmAuto, ground.frmVRCAuto, ground.frmInHouse, ground.frmDBUG},
              classicOperations()),
      wireless(autoSetting(), autoTies(), ground.frmAuto),
      velarc2(autoSetting(), autoTies(), ground.frmVRCAuto),
      recovery(ground.state, ground.frmRecover, [this] { wireless.LaunchFAQ(); }) {
  tieServiceButtons();
  // A handler that fails outside of any operation, such as an answer to a unit on a port that has just gone.
  ground.queue.setFailureHandler([this](const Failure& failure) { tellFailure(ground.host, ground.state, "Error: ", failure); });
}

void Program::Parts::tieServiceButtons() {
  Form1& form1 = ground.form1;
  form1.Command5.OnClick = [this] { ground.frmAbout.Show(); };
  form1.btnAuto.OnClick = [this] { ground.frmAuto.Show(); };
  form1.btnVRCrelnotef.OnClick = [this] { catalogue.web.LaunchRelNote(); };
  form1.lblFAQ.OnClick = [this] { wireless.LaunchFAQ(); };
  form1.Command4.OnClick = [this] {
    ground.mainPort.setSettings("57600,N,8,1");
    ground.mainPort.setHandshake(Handshake::None);
    ground.mainPort.setReceiveThreshold(9);
    line.commands.Send_WantToProgramRF1();
  };
}

ClassicOperations Program::Parts::classicOperations() {
  return {
      .clearUrls = [this] { catalogue.lists.clearUrls(); },
      .GetUpdateText = [this] { catalogue.lists.GetUpdateText(); },
      .GetUpdateSOFT = [this] { catalogue.lists.GetUpdateSOFT(); },
      .fetching = [this] { return catalogue.lists.underWay(); },
      .GetFirmware2 = [this] { catalogue.download.GetFirmware2(); },
      .GetSoftware = [this] { catalogue.download.GetSoftware(); },
      .downloadDone = [this] { return catalogue.download.DownloadDone; },
      .InstallSoftware = [this] { catalogue.web.InstallSoftware(); },
      .LaunchRelNote = [this] { catalogue.web.LaunchRelNote(); },
      .RegisterUserData = [this] { catalogue.registration.RegisterUserData(); },
      .ConvertFront = [this] { flash.frontImage.ConvertFront(); },
      .loadVelarcFront = [this] { return flash.frontImage.LoadFrontImage(); },
      .requireImage = [this] { flash.processors.requireImage(); },
      .ConnectVelarc = [this] { flash.run.ConnectVelarc(); },
      .DoSerialNumber = [this] { personal.serialNumber.DoSerialNumber(); },
  };
}

AutoWizardTies Program::Parts::autoTies() {
  return {.GetFirmware2 =
              [this] {
                catalogue.download.GetFirmware2();
                return catalogue.download.DownloadDone;
              },
          .StartDoc = [this](const std::string& path) { catalogue.web.openPage(path); },
          .abandonList = [this] { catalogue.lists.abandon(); },
          .returnToFirstTaskPage = [this] { classic.returnToFirstTaskPage(); }};
}

Program::Program(const Platform& platform, const BuildSwitches& switches) : parts_(std::make_unique<Parts>(platform, switches)) {}

Program::~Program() = default;

FormHost& Program::host() { return parts_->ground.host; }

const RunState& Program::state() const { return parts_->ground.state; }

Activity& Program::activity() { return parts_->ground.activity; }

void Program::start() {
  parts_->ground.form1.Load();
  if (parts_->ground.state.FactoryBuild) {
    parts_->ground.recorder.fileMet(SerialFile::kName);
  }
  if (!parts_->ground.state.InHouseBuild) {
    parts_->ground.form1.Show();
  }
  try {
    parts_->ground.set.settle();
  } catch (const Failure& failure) {
    tellFailure(parts_->ground.host, parts_->ground.state, "Error putting firmware in its place: ", failure);
  }
}

void Program::run() {
  try {
    for (;;) {
      parts_->ground.queue.WaitEvents();
    }
  } catch (const ProgramEnded&) {
    // The one regular end; ports and files close with their owners.
  }
}

}  // namespace firmlane
