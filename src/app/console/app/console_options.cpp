#include "console_options.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include "app/built_in_servers.h"
#include "app/configured_switches.h"
#include "platform/qt/identity.h"
#include "platform/qt/server_address.h"

namespace firmlane {

namespace {

constexpr double kFastest = 1000;

/// "3=/dev/ttyUSB0"
bool takePort(const QString& text, PortMap::Devices& ports) {
  const qsizetype equals = text.indexOf('=');
  bool isNumber = false;
  const int number = text.left(equals).toInt(&isNumber);
  const QString device = text.mid(equals + 1);
  if (equals < 0 || !isNumber || number < 1 || number > kHighestPort || device.isEmpty()) {
    return false;
  }
#ifdef Q_OS_UNIX
  ports[number] = QDir::current().absoluteFilePath(device).toStdString();  // --dir changes the current directory
#else
  ports[number] = device.toStdString();
#endif
  return true;
}

}  // namespace

std::optional<ConsoleOptions> readConsoleOptions(const QStringList& arguments, std::string& error) {
  const QCommandLineOption dir("dir", "The program's directory; it becomes the current directory too.", "DIR");
  const QCommandLineOption server("server", "The maker's web server, such as http://127.0.0.1:8080.", "URL");
  const QCommandLineOption registration("registration-server", "The registration server.", "URL");
  const QCommandLineOption port("port", "Port N (1 to 16) is this device; may be repeated.", "N=DEVICE");
  const QCommandLineOption scale("time-scale", "The program's clock runs K times as fast, 1 to 1000.", "K", "1");
  const QCommandLineOption record("record", "Writes what happens to this file as it happens.", "FILE");
  const QCommandLineOption stop("stop-at-failure", "The first command that fails ends the console with status 1.");
  const QCommandLineOption factory("factory-build", "Start as the production line's build.");
  const QCommandLineOption inHouse("in-house-build", "Start as the in-house build.");
  const QCommandLineOption debug("debug-view", "Show the debug view of front panel runs.");
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "The Firmlane wizard without a window: commands on standard input, JSON lines on standard output.");
  const QCommandLineOption help("help", "This text.");
  const QCommandLineOption version("version", "The version.");
  parser.addOptions({help, version, dir, server, registration, port, scale, record, stop, factory, inHouse, debug});
  const auto fail = [&error](const QString& text) {
    error = "firmlane-console: " + text.toStdString();
    return std::nullopt;
  };
  if (!parser.parse(arguments)) {
    return fail(parser.errorText());
  }
  if (!parser.positionalArguments().isEmpty()) {
    return fail("unexpected word: " + parser.positionalArguments().first());
  }
  if (parser.isSet(help) || parser.isSet(version)) {
    return ConsoleOptions{.text = parser.isSet(help) ? parser.helpText().toStdString() : versionLine("firmlane-console")};
  }
  ConsoleOptions options{.text = {},
                         .directory = parser.value(dir).toStdString(),
                         .servers = builtInServers(),
                         .ports = {},
                         .switches = {.factoryBuild = kConfiguredSwitches.factoryBuild || parser.isSet(factory),
                                      .inHouseBuild = kConfiguredSwitches.inHouseBuild || parser.isSet(inHouse),
                                      .debugView = kConfiguredSwitches.debugView || parser.isSet(debug)}};
  if (parser.isSet(dir) && !QFileInfo(parser.value(dir)).isDir()) {
    return fail("no such directory: " + parser.value(dir));
  }
  for (const auto& [option, target] :
       {std::pair{&server, &options.servers.maker}, std::pair{&registration, &options.servers.registration}}) {
    if (parser.isSet(*option)) {
      const auto given = serverAddress(parser.value(*option));
      if (!given) {
        return fail("not a server's address: " + parser.value(*option));
      }
      *target = *given;
    }
  }
  for (const QString& text : parser.values(port)) {
    if (!takePort(text, options.ports)) {
      return fail("a port is N=DEVICE with N from 1 to 16: " + text);
    }
  }
  if (parser.isSet(record)) {
    options.recordFile = QDir::current().absoluteFilePath(parser.value(record)).toStdString();  // --dir changes it
  }
  options.stopAtFailure = parser.isSet(stop);
  bool isNumber = false;
  options.timeScale = parser.value(scale).toDouble(&isNumber);
  if (!isNumber || !(options.timeScale >= 1 && options.timeScale <= kFastest)) {
    return fail("the time scale is a number from 1 to 1000: " + parser.value(scale));
  }
  return options;
}

}  // namespace firmlane
