// How long the program takes until its first window stands, from the start of main, and how much memory it then holds. Builds
// what firmlane builds. Wants a display, or QT_QPA_PLATFORM=offscreen.
#include <QApplication>
#include <QElapsedTimer>
#include <QWindow>
#include <cstdio>
#include <fstream>
#include <string>

#include "app/program.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_platform.h"
#include "platform/widgets/widget_screen.h"

using namespace firmlane;

namespace {

int residentKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") {
      int kilobytes = 0;
      status >> kilobytes;
      return kilobytes;
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QElapsedTimer clock;
  clock.start();
  const QApplication application(argc, argv);
  QtPlatform platform({.directory = ".", .ports = {}});
  WidgetScreen screen([&platform](int number) { return platform.ports.hint(number); });
  QtDesktop desktop([](const QUrl&) { return true; });
  Program program({.queue = platform.queue,
                   .screen = screen,
                   .mainDriver = platform.mainDriver,
                   .versionDriver = platform.versionDriver,
                   .http = platform.http,
                   .desktop = desktop,
                   .files = platform.files,
                   .servers = {}});
  screen.attach(program.host(), &program.activity());
  program.start();
  const QWidget* window = screen.window(*program.host().onScreen().front());
  while (window->windowHandle() == nullptr || !window->windowHandle()->isExposed()) {
    platform.queue.PumpEvents();
  }
  std::printf("first window after %lld ms, resident %.1f MB\n", static_cast<long long>(clock.elapsed()),
              residentKilobytes() / 1024.0);
  return 0;
}
