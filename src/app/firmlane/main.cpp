// The delivered program: the wizard in its windows. It takes no options.
#include <QDesktopServices>
#include <cstdio>

#include "app/built_in_servers.h"
#include "app/configured_switches.h"
#include "app/details.h"
#include "app/program.h"
#include "platform/qt/identity.h"
#include "platform/qt/program_directory.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/standard_input.h"
#include "platform/qt/surroundings.h"
#include "platform/widgets/display_application.h"
#include "platform/widgets/widget_screen.h"

using namespace firmlane;

int main(int argc, char** argv) {
  holdStandardStreams();
  if (argc > 1) {
    std::fprintf(stderr, "firmlane takes no options\n");
    return 2;
  }
  const auto application = openDisplay(argc, argv, "firmlane");
  introduce("firmlane");

  QtPlatform platform({.directory = programDirectory(), .ports = {}});
  WidgetScreen screen([&platform](int number) { return platform.ports.hint(number); });
  QtDesktop desktop(&QDesktopServices::openUrl);
  Program program({.queue = platform.queue,
                   .screen = screen,
                   .mainDriver = platform.mainDriver,
                   .versionDriver = platform.versionDriver,
                   .http = platform.http,
                   .desktop = desktop,
                   .files = platform.files,
                   .servers = builtInServers(),
                   .recorder = platform.record},
                  kConfiguredSwitches);
  screen.attach(program.host(), &program.activity());
  const Details details(platform.record, program, builtInServers(), kConfiguredSwitches,
                        {qtVersionInUse(), systemInUse(), platform.files.programDirectory(),
                         [&platform](int port) { return platform.ports.hint(port); }});
  screen.setDetails([&details] { return details.text(); });
  program.start();
  program.run();
  return 0;
}
