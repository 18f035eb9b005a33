// The whole program in its windows, as far as it goes without a unit and without a network.
#include <gmock/gmock.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTimer>

#include "app/program.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_platform.h"
#include "platform/widgets/widget_screen.h"
#include "world.h"

namespace firmlane::test {
namespace {

struct ProgramInWindows : testing::Test {
  QObject context;  // what waits in `when` ends with the test
  TemporaryDirectory directory;
  QtPlatform platform{{.directory = directory.path(), .ports = {{1, "/dev/firmlane-no-such-device"}}}};
  WidgetScreen screen{[this](int number) { return platform.ports.hint(number); }};
  QtDesktop desktop{[](const QUrl&) { return true; }};
  Program program{{.queue = platform.queue,
                   .screen = screen,
                   .mainDriver = platform.mainDriver,
                   .versionDriver = platform.versionDriver,
                   .http = platform.http,
                   .desktop = desktop,
                   .files = platform.files,
                   .servers = {"http://127.0.0.1:1", "http://127.0.0.1:1"}}};

  ProgramInWindows() {
    screen.attach(program.host());
    program.start();
    run(50 * kMillisecond);
  }
  void run(Micros span) {
    for (const Micros until = platform.queue.now() + span; platform.queue.now() < until;) {
      platform.queue.waitEventsUntil(until);
    }
  }
  QWidget* widget(const std::string& form, const std::string& name) {
    const Form* owner = program.host().form(form);
    return screen.window(*owner) == nullptr ? nullptr : (*screen.window(*owner))[name];
  }
  void click(const std::string& form, const std::string& name) {
    auto* button = qobject_cast<QAbstractButton*>(widget(form, name));
    ASSERT_NE(button, nullptr) << form << "." << name;
    button->click();
    run(150 * kMillisecond);
  }
  /// Does something as a slot would, from below whatever the program is at, once `ready` holds.
  void when(std::function<bool()> ready, std::function<void()> then) {
    QTimer::singleShot(10, &context, [this, ready = std::move(ready), then = std::move(then)]() mutable {
      if (ready()) {
        then();
      } else {
        when(std::move(ready), std::move(then));
      }
    });
  }
  bool shows(const std::string& form, const std::string& name) {
    return widget(form, name) != nullptr && widget(form, name)->isVisible();
  }
  QString text(const std::string& form, const std::string& name) {
    auto* label = qobject_cast<QLabel*>(widget(form, name));
    return label == nullptr ? QString() : label->text();
  }
  void keep(const std::string& form, const std::string& name) {
    if (const QString pictures = qEnvironmentVariable("FIRMLANE_GALLERY"); !pictures.isEmpty()) {
      screen.window(*program.host().form(form))->grab().save(pictures + "/program-" + QString::fromStdString(name) + ".png");
    }
  }
};

TEST_F(ProgramInWindows, LeadsFromTheWelcomeToTheWirelessWizard) {
  keep("Form1", "1-welcome");
  EXPECT_EQ(screen.window(*program.host().form("Form1"))->windowTitle(), "Tolvex Firmlane Version 5.0");
  EXPECT_TRUE(text("Form1", "lblTop").startsWith("Welcome to the Tolvex Firmlane\n\nUse this Wizard to:\n\n- Download"));
  click("Form1", "Command3");
  keep("Form1", "2-product");
  EXPECT_FALSE(widget("Form1", "Command3")->isEnabled());
  FormWindow* form1 = screen.window(*program.host().form("Form1"));
  QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
  QApplication::sendEvent(form1, &tab);
  EXPECT_EQ(form1->focusWidget(), widget("Form1", "VRCButton")) << "Tab leads to the page first, not to Exit";
  click("Form1", "LWXButton");
  keep("Form1", "3-task");
  EXPECT_EQ(text("Form1", "lblTop"), "What would you like to do?");
  click("Form1", "Command3");
  keep("frmAuto", "4-wizard");
  EXPECT_FALSE(screen.window(*program.host().form("Form1"))->isVisible());
  click("frmAuto", "btnNext");
  keep("frmAuto", "5-options");
  EXPECT_FALSE(widget("frmAuto", "btnNext")->isEnabled());
  EXPECT_EQ(screen.window(*program.host().form("frmAuto"))->focusWidget(), widget("frmAuto", "ChkOffline"));
  click("frmAuto", "chkReceiver");
  EXPECT_TRUE(widget("frmAuto", "btnNext")->isEnabled());
  when([this] { return shows("frmPort", "Command3"); },
       [this] {
         keep("frmPort", "6-port");
         qobject_cast<QAbstractButton*>(widget("frmPort", "Command3"))->click();
       });
  when([this] { return shows("frmPort", "Command1"); },
       [this] {
         keep("frmPort", "7-port-manual");
         EXPECT_TRUE(qobject_cast<QPushButton*>(widget("frmPort", "Command1"))->isDefault()) << "Return takes the port chosen";
         qobject_cast<QAbstractButton*>(widget("frmPort", "Command1"))->click();
       });
  when([this] { return screen.box() != nullptr; },
       [this] {
         EXPECT_EQ(screen.box()->text(), "Error opening port: There is no serial port COM 1 (/dev/firmlane-no-such-device) (#2)");
         platform.source.requestEnd();
       });
  EXPECT_THROW(
      {
        click("frmAuto", "btnNext");
        run(5 * kSecond);
      },
      ProgramEnded);
}

TEST_F(ProgramInWindows, AWizardTakesOverTheWholeScreenFromAMaximisedMainWindow) {
  screen.window(*program.host().form("Form1"))->showMaximized();
  click("Form1", "Command3");
  click("Form1", "LWXButton");
  click("Form1", "Command3");
  EXPECT_TRUE(screen.window(*program.host().form("frmAuto"))->isMaximized());
}

TEST_F(ProgramInWindows, ClosingTheMainWindowAsksFirst) {
  for (const char* button : {"Cancel", "OK"}) {
    when([this] { return screen.box() != nullptr; },
         [this, button] {
           EXPECT_EQ(screen.box()->text(), "Quit Tolvex Firmlane Now?");
           screen.box()->button(button == std::string("OK") ? QMessageBox::Ok : QMessageBox::Cancel)->click();
         });
    screen.window(*program.host().form("Form1"))->close();
    if (button == std::string("OK")) {
      EXPECT_THROW(run(5 * kSecond), ProgramEnded);
    } else {
      run(300 * kMillisecond);
      EXPECT_TRUE(screen.window(*program.host().form("Form1"))->isVisible());
    }
  }
}

}  // namespace
}  // namespace firmlane::test
