// The classic wizard over the ground of all logic tests, with the operations of other rooms noted instead of done.
#pragma once

#include <gmock/gmock.h>

#include "wizard/classic/page_engine.h"
#include "wizard/classic/start_up.h"
#include "world.h"

namespace firmlane::test {

class ClassicTest : public testing::Test {
 protected:
  explicit ClassicTest(const BuildSwitches& switches = {})
      : start_(world_.host, world_.mainPort, receive_, world_.state, world_.form1, world_.frmInHouse, switches) {
    world_.form1.Loaded = false;  // the ground loads it before anything is tied to it
    world_.form1.Show();
  }

  /// A click as the user makes it, and what follows from it at once.
  void click(Control& control) {
    EXPECT_EQ(world_.host.click(control), std::nullopt) << control.name();
    world_.queue.PumpEvents();
  }
  void next() { click(world_.form1.Command3); }

  std::function<void()> note(const std::string& name) {
    return [this, name] { log_.push_back(name); };
  }

  /// What is wrong with the page while something comes down.
  [[nodiscard]] std::string duringDownload() const {
    return std::string(world_.form1.Command3.Enabled ? ", Next live" : "") +
           (world_.form1.ProgressBar1.Visible ? "" : ", no bar") + (world_.form1.Timer1.enabled() ? "" : ", bar stands");
  }

  World world_;
  std::vector<std::string> log_;
  bool fetching_ = false;
  bool velarcFrontReady_ = true;
  std::function<void()> onFlash_ = [] {};
  CommandSet commands_{world_.mainPort, world_.state, world_.frmAuto, world_.frmVRCAuto};
  ShortDelay delay_{world_.queue, world_.state, world_.form1};
  ReceivePath receive_{world_.host,  world_.mainPort, commands_,      delay_,
                       world_.state, world_.form1,    world_.frmAuto, world_.frmVRCAuto};
  UnitAnswer answer_{world_.host, world_.mainPort, world_.supervision, world_.state, world_.form1};
  Preset preset_{world_.mainPort, commands_, receive_, answer_, world_.state, world_.form1};
  FactoryLine line_{world_.mainPort, receive_, preset_, world_.supervision, world_.wizard, world_.state, world_.form1};
  StartUp start_;
  PageEngine engine_{world_.host,
                     world_.files,
                     world_.mainPort,
                     line_,
                     world_.wizard,
                     world_.activity,
                     world_.state,
                     world_.form1,
                     {world_.frmPort, world_.frmVersion, world_.frmAuto, world_.frmVRCAuto, world_.frmInHouse, world_.frmDBUG},
                     {.clearUrls = note("clear urls"),
                      .GetUpdateText = note("firmware list"),
                      .GetUpdateSOFT = note("software list"),
                      .fetching = [this] { return fetching_; },
                      .GetFirmware2 = [this] { log_.push_back("firmware" + duringDownload()); },
                      .GetSoftware = [this] { log_.push_back("software" + duringDownload()); },
                      .downloadDone = [] { return true; },
                      .InstallSoftware = note("install"),
                      .LaunchRelNote = note("release notes"),
                      .RegisterUserData = note("register"),
                      .ConvertFront =
                          [this] {
                            log_.push_back("convert, " + world_.frmAuto.lblReset.Caption.get() +
                                           (world_.frmAuto.btnNext.Enabled ? " Next live" : ""));
                          },
                      .loadVelarcFront =
                          [this] {
                            log_.emplace_back("load Velarc front");
                            return velarcFrontReady_;
                          },
                      .requireImage = [] {},
                      .ConnectVelarc =
                          [this] {
                            log_.emplace_back("flash " + world_.state.FlashTarget);
                            onFlash_();
                          },
                      .DoSerialNumber = note("serial number")}};
  Form1& form1_ = world_.form1;
  RunState& state_ = world_.state;
};

}  // namespace firmlane::test
