// The composed program: every button is tied to what it stands for, in each build, and the fronts of a Velarc2 get their own
// image.
#include <gmock/gmock.h>

#include "platform_over.h"
#include "releases.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The program with a unit on port 1, which the service buttons use.
struct Composed : Ground {
  explicit Composed(const BuildSwitches& switches = {}) {
    program = std::make_unique<Program>(platformOver(*this), switches);
    screen.press = [this](MessageButton button) { program->host().answer(button); };
    screen.answerOthers();
    program->start();
  }

  template <typename F>
  F& form(const char* name) {
    return static_cast<F&>(*program->host().form(name));
  }
  /// A press in code, which reaches the hidden buttons too; from the queue, as a user's would come. A handler that still waits
  /// after that time is broken off.
  void press(Control& control, Micros then = kSecond) {
    struct Enough {};
    queue.post([&control] { control.Click(); });
    after(then, [] { throw Enough(); });
    try {
      for (;;) {
        queue.WaitEvents();
      }
    } catch (const Enough&) {
      return;
    }
  }
  [[nodiscard]] bool shown(const char* name) { return program->host().form(name)->Visible; }
  [[nodiscard]] std::string lastBox() const { return screen.boxes().empty() ? "" : screen.boxes().back().text; }

  VirtualWire& wire = wires.add(1);
  std::unique_ptr<Program> program;
};

TEST(ComposedProgram, EveryButtonIsTied) {
  Composed composed;
  for (const Form* form : composed.program->host().forms()) {
    for (const Control* control : form->controls()) {
      const bool pressed = control->kind() == ControlKind::CommandButton || control->name() == "lblFAQ";
      EXPECT_TRUE(!pressed || control->OnClick) << form->name() << "." << control->name();
    }
  }
}

TEST(ComposedProgram, ButtonsDoWhatTheyStandFor) {
  struct Press {
    const char* button;
    std::function<std::string(Composed&)> seen;
    const char* what;
    bool factory = false;
  };
  const auto documents = [](Composed& c) { return c.desktop.documents.empty() ? "" : c.desktop.documents.back(); };
  const auto topForm = [](Composed& c) { return c.program->host().onScreen().front()->name(); };
  const auto line = [](Composed& c) { return std::to_string(c.wire.settings()->baud) + ": " + hex(c.wire.sent()); };
  const auto box = [](Composed& c) { return c.lastBox(); };
  for (const Press& press :
       {Press{"Command5", topForm, "frmAbout"},
        {"btnAuto", topForm, "frmAuto"},
        {"lblFAQ", documents, "http://maker.example/Mic_FAQ_LWX_index.htm"},
        {"btnVRCrelnotef", documents, "http://maker.example/LWX/remote/version-remote.html"},
        {"Command4", line, "57600: 02 00 00 00 1E 30 4E 3E 3E"},
        {"btnSerial", topForm, "newserial", true},
        {"btnMic", box, "Error: "},
        {"btnSN", [](Composed& c) { return c.form<Form1>("Form1").lblResetSerial.Caption.get(); }, "cycle the power", true}}) {
    SCOPED_TRACE(press.button);
    Composed composed({.factoryBuild = press.factory});
    composed.press(*composed.program->host().form("Form1")->control(press.button));
    EXPECT_THAT(press.seen(composed), HasSubstr(press.what));
  }
}

TEST(ComposedProgram, AHandlerThatFailsOutsideOfAnyOperationIsTold) {
  Composed composed;
  composed.wire.openFailure = Failure(13, "In use");
  composed.press(*composed.program->host().form("Form1")->control("Command4"));
  ASSERT_EQ(composed.screen.boxes().size(), 1U);
  EXPECT_EQ(composed.screen.boxes()[0].text, "Error: In use (#13)");
  EXPECT_EQ(composed.screen.boxes()[0].icon, MessageIcon::Critical);
  EXPECT_EQ(composed.program->state().ErrorText, "Error: In use (#13)");
}

TEST(ComposedProgram, RunGoesOnUntilTheUserEndsIt) {
  Composed composed;
  composed.after(kSecond, [&composed] { composed.program->host().close(*composed.program->host().form("Form1")); });
  composed.program->run();
  EXPECT_EQ(composed.lastBox(), "Quit Tolvex Firmlane Now?");
}

TEST(ComposedProgram, ASetThatCannotBePutInItsPlaceIsToldAtTheStart) {
  Composed composed;
  composed.directory.write("firmlane.set", std::string("damaged"));
  composed.program = std::make_unique<Program>(platformOver(composed));
  composed.program->start();
  EXPECT_THAT(composed.lastBox(),
              testing::StartsWith("Error putting firmware in its place: The firmware files there are not one"));
}

TEST(ComposedProgram, TheServiceButtonListensForFramesOfNineBytes) {
  Composed composed;
  composed.press(*composed.program->host().form("Form1")->control("Command4"));
  composed.wire.deliver(bytes("02 00 00 00 1E 30 4E 3E"));
  composed.run(kSecond);
  EXPECT_EQ(composed.form<Form1>("Form1").msgcount.Text.get(), "");
  composed.wire.deliver(bytes("3E"));
  composed.run(kSecond);
  EXPECT_EQ(composed.form<Form1>("Form1").msgcount.Text.get(), "1");
}

TEST(ComposedProgram, FrontAAndFrontBGetTheVelarcsOwnImage) {
  Composed composed;
  putOnDisk(composed.directory, Line::Velarc2, releases(Line::Velarc2)[0]);
  sim::VirtualUnit bench(composed.time, composed.wire, "velarc2b");
  auto& form1 = composed.form<Form1>("Form1");
  for (Control* control : std::initializer_list<Control*>{&form1.Command3, &form1.VRCButton, &form1.Command3}) {
    composed.press(*control);
  }
  auto& wizard = composed.form<FrmVRCAuto>("frmVRCAuto");
  composed.press(wizard.btnNext);
  for (CommandButton* front : {&wizard.btnF1, &wizard.btnF2}) {
    bench.unit.powerOff();
    composed.after(kSecond, [&] { bench.unit.powerOn(); });
    composed.press(*front, 150 * kSecond);
    EXPECT_EQ(wizard.lblReset.Caption.get(), front->Caption.get().substr(0, 7) + " Programming Complete");
  }
  EXPECT_EQ(bench.unit.state().versionOf("Front A"), "1.3.0");
  EXPECT_EQ(bench.unit.state().versionOf("Front B"), "1.3.0");
  EXPECT_TRUE(composed.screen.boxes().empty());
}

}  // namespace
}  // namespace firmlane::test
