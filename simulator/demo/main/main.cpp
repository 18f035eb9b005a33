// firmlane-demo: the real windows on a simulated unit, for someone who has no unit. Beside the wizard stands a bench window with
// the unit and its power switch. With --play it works the whole update by itself.
#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string_view>

#include "app/details.h"
#include "app/program.h"
#include "demo/bench_window.h"
#include "demo/demo_options.h"
#include "demo/recorder.h"
#include "live/direct_unit.h"
#include "platform/qt/identity.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/standard_input.h"
#include "platform/qt/surroundings.h"
#include "platform/system_path.h"
#include "platform/widgets/display_application.h"
#include "platform/widgets/widget_screen.h"
#include "player/player.h"
#include "web/web_server.h"

namespace {

using namespace firmlane;
using namespace firmlane::sim;

constexpr int kPort = 3;
constexpr int kWrongOption = 2;
constexpr int kBetween = 16;
constexpr int kPlaceMilliseconds = 60;
constexpr int kStepMilliseconds = 400;  // of the program's clock between two looks of the player
constexpr Micros kPlayLimit = Micros{30} * 60 * kSecond;

Wishes wishesFor(const UnitModel& model) {
  Wishes wishes;
  switch (model.family) {
    case Family::Wireless:
      wishes.productButton = "LWXButton";
      break;
    case Family::Velarc2:
      wishes.productButton = "VRCButton";
      break;
    case Family::OldVelarc:
      wishes.productButton = "VRColdButton";
      break;
  }
  return wishes;
}

/// Plays the user, from a timer of the event loop, until the update has ended in one way or other.
class Play {
 public:
  Play(const DemoOptions& options, QtPlatform& platform, Program& program, WidgetScreen& screen, Unit& unit,
       const std::filesystem::path& screenshots)
      : platform_(platform),
        host_(program.host()),
        recorder_(program.activity(), screen, screenshots),
        player_(
            program.host(), [&unit](bool on) { on ? unit.powerOn() : unit.powerOff(); }, wishesFor(*options.model)) {
    player_.onText = [this](const std::string& text) { recorder_.page(host_, text); };
    onUnit_ = std::exchange(unit.onChange, nullptr);
    unit.onChange = [this, &unit] {
      recorder_.unitChanged(unit.state());
      onUnit_();
    };
    QObject::connect(&timer_, &QTimer::timeout, [this] { step(); });
    timer_.start(std::max(1, static_cast<int>(kStepMilliseconds / options.speed)));
  }

  [[nodiscard]] bool succeeded() const { return succeeded_; }

 private:
  void step() {
    const Player::Outcome outcome = player_.step();
    if (outcome == Player::Outcome::Playing && platform_.source.now() < kPlayLimit) {
      return;
    }
    succeeded_ = outcome == Player::Outcome::Succeeded;
    if (!succeeded_) {
      std::cout << "The update did not succeed. " << player_.failure() << std::endl;
    }
    timer_.stop();
    platform_.source.requestEnd();
  }

  QtPlatform& platform_;
  FormHost& host_;
  sim::Recorder recorder_;
  Player player_;
  std::function<void()> onUnit_;
  QTimer timer_;
  bool succeeded_ = false;
};

std::filesystem::path screenshotDirectory(const DemoOptions& options) {
  if (!options.screenshots.empty()) {
    std::filesystem::create_directories(systemPath(options.screenshots));
    return systemPath(options.screenshots);
  }
  QTemporaryDir directory(QDir::tempPath() + "/firmlane-demo-XXXXXX");
  directory.setAutoRemove(false);
  return systemPath(directory.path().toStdString());
}

/// The bench stands to the right of the program's window, both in the middle of the screen. Where the screen is too narrow for
/// both, the bench lies over the window's upper right, clear of its buttons.
void standSideBySide(QWidget& program, QWidget& bench) {
  const QRect room = bench.screen()->availableGeometry();
  const QRect window = program.frameGeometry();
  const int left = room.left() + std::max(0, (room.width() - window.width() - kBetween - bench.frameGeometry().width()) / 2);
  const int right = std::min(left + window.width() + kBetween, room.right() + 1 - bench.frameGeometry().width());
  program.move(left, program.y());
  bench.move(right, std::max(room.top(), program.y()));
}

/// Each main window of the program that comes up, or fills the screen no longer, finds its place beside the bench.
class BesideTheBench : public QObject {
 public:
  BesideTheBench(const WidgetScreen& screen, const FormHost& host, QWidget& bench) : screen_(screen), host_(host), bench_(bench) {
    QCoreApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool mayOverlap = event->type() == QEvent::Show || event->type() == QEvent::WindowStateChange;
    if (mayOverlap && dynamic_cast<FormWindow*>(watched) != nullptr) {
      // Behind the program's own placing, which waits for the window manager.
      QTimer::singleShot(kPlaceMilliseconds, this, [this] { arrange(); });
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  void arrange() {
    FormWindow* top = host_.onScreen().empty() ? nullptr : screen_.window(*host_.onScreen().front());
    if (top != nullptr && !top->isDialog() && !top->isMaximized()) {
      standSideBySide(*top, bench_);
    }
  }

  const WidgetScreen& screen_;
  const FormHost& host_;
  QWidget& bench_;
};

int run(const DemoOptions& options) {
  const QTemporaryDir directory;
  DirectUnit bench(*options.model, kPort, options.speed);
  DirectDriver mainDriver(bench);
  DirectDriver versionDriver(bench);
  bench.unit.startRunning();
  const WebServer web;
  const auto serverOr = [&web](const std::string& given) { return given.empty() ? web.url() : given; };

  QtPlatform platform({.directory = systemPath(directory.path().toStdString()),
                       .ports = {{kPort, "simulated unit"}},
                       .timeScale = options.speed});
  WidgetScreen screen([&platform](int number) { return platform.ports.hint(number); });
  QtDesktop desktop(&QDesktopServices::openUrl);
  Program program({.queue = platform.queue,
                   .screen = screen,
                   .mainDriver = mainDriver,
                   .versionDriver = versionDriver,
                   .http = platform.http,
                   .desktop = desktop,
                   .files = platform.files,
                   .servers = {.maker = serverOr(options.servers.maker), .registration = serverOr(options.servers.registration)},
                   .recorder = platform.record},
                  options.switches);
  screen.attach(program.host(), &program.activity());
  const Details details(platform.record, program,
                        {.maker = serverOr(options.servers.maker), .registration = serverOr(options.servers.registration)},
                        options.switches,
                        {qtVersionInUse(), systemInUse(), platform.files.programDirectory(),
                         [&platform](int port) { return platform.ports.device(port); }});
  screen.setDetails([&details] { return details.text(); });
  BenchWindow window(bench.unit);
  window.onClosed = [&platform] { platform.source.requestEnd(); };
  window.onPulled = [&bench] { bench.pull(); };
  program.start();
  const BesideTheBench placing(screen, program.host(), window);
  window.show();
  if (const auto& shown = program.host().onScreen(); !shown.empty()) {
    standSideBySide(*screen.window(*shown.front()), window);
  }

  std::unique_ptr<Play> play;
  if (options.play) {
    const std::filesystem::path screenshots = screenshotDirectory(options);
    std::cout << "Screenshots go to " << screenshots.string() << std::endl;
    play = std::make_unique<Play>(options, platform, program, screen, bench.unit, screenshots);
  }
  program.run();
  bench.unit.onChange = nullptr;
  return play && !play->succeeded() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

/// The platform without a display says with each window that it has no window manager to ask.
void sayWhatMatters(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (!message.startsWith(QLatin1String("This plugin does not support"))) {
    std::cerr << message.toStdString() << std::endl;
  }
}

/// With windows, unless all that is asked for is a text: that has to come without a display too.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv) {
  const bool text = std::any_of(argv, argv + argc,
                                [](std::string_view word) { return word == "--help" || word == "-h" || word == "--version"; });
  if (text) {
    return std::make_unique<QCoreApplication>(argc, argv);
  }
  return openDisplay(argc, argv, "firmlane-demo");
}

int main(int argc, char** argv) {
  holdStandardStreams();
  const auto application = makeApplication(argc, argv);
  qInstallMessageHandler(sayWhatMatters);
  introduce("firmlane-demo");
  std::string error;
  const auto options = readDemoOptions(QApplication::arguments(), error);
  if (!options) {
    std::cerr << error << std::endl;
    return kWrongOption;
  }
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    return run(*options);
  } catch (const Failure& failure) {
    std::cerr << failure.description() << std::endl;
    return EXIT_FAILURE;
  }
}
