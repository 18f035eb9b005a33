#include "demo/demo_options.h"

#include <QCommandLineParser>
#include <cstdio>
#include <cstdlib>

#include "platform/qt/identity.h"
#include "platform/qt/server_address.h"

namespace firmlane::sim {

namespace {

constexpr double kFastest = 1000;

const QCommandLineOption kUnit("unit", "The unit on the bench.", "name", "lwx52");
const QCommandLineOption kSpeed("speed", "Everything runs this many times as fast as in real life, 1 to 1000 (1, with --play 4).",
                                "factor");
const QCommandLineOption kPlay("play", "Work the whole update without a user; exit 0 only when it succeeds.");
const QCommandLineOption kScreenshots("screenshots", "Where --play puts a picture of each page.", "directory");
const QCommandLineOption kServer("server", "The maker's web server, instead of the demo's own.", "URL");
const QCommandLineOption kRegistration("registration-server", "The registration server, instead of the demo's own.", "URL");
const QCommandLineOption kFactory("factory-build", "Start as the production line's build.");
const QCommandLineOption kInHouse("in-house-build", "Start as the in-house build.");
const QCommandLineOption kDebug("debug-view", "Show the debug view of front panel runs.");

std::string unitNames() {
  std::string names;
  for (const UnitModel& model : unitModels()) {
    names += std::string(names.empty() ? "" : ", ") + model.name;
  }
  return names;
}

/// False for an address that is given and is none.
bool takeServer(const QCommandLineParser& parser, const QCommandLineOption& option, std::string& server) {
  const std::optional<std::string> given = serverAddress(parser.value(option));
  server = given.value_or("");
  return given || !parser.isSet(option);
}

}  // namespace

std::optional<DemoOptions> readDemoOptions(const QStringList& arguments, std::string& error) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("The Firmlane wizard on a simulated unit. Units: ") +
                                   QString::fromStdString(unitNames()));
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version("version", "The version.");
  parser.addOptions({version, kUnit, kSpeed, kPlay, kScreenshots, kServer, kRegistration, kFactory, kInHouse, kDebug});
  if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
    error = parser.errorText().isEmpty() ? "firmlane-demo takes options only" : parser.errorText().toStdString();
    return std::nullopt;
  }
  if (parser.isSet(help)) {
    std::fputs(qPrintable(parser.helpText()), stdout);
    std::exit(EXIT_SUCCESS);
  }
  if (parser.isSet(version)) {
    std::fputs(versionLine("firmlane-demo").c_str(), stdout);
    std::exit(EXIT_SUCCESS);
  }
  // At any other speed than life's a user has less than its 20 seconds for the unit's power switch.
  const QString usualSpeed = parser.isSet(kPlay) ? QStringLiteral("4") : QStringLiteral("1");
  bool isNumber = false;
  DemoOptions options{
      .model = findUnitModel(parser.value(kUnit).toStdString()),
      .speed = (parser.isSet(kSpeed) ? parser.value(kSpeed) : usualSpeed).toDouble(&isNumber),
      .play = parser.isSet(kPlay),
      .screenshots = parser.value(kScreenshots).toStdString(),
      .servers = {},
      .switches = {
          .factoryBuild = parser.isSet(kFactory), .inHouseBuild = parser.isSet(kInHouse), .debugView = parser.isSet(kDebug)}};
  if (options.model == nullptr) {
    error = "There is no unit of that name; units are " + unitNames();
    return std::nullopt;
  }
  if (!isNumber || !(options.speed >= 1 && options.speed <= kFastest)) {
    error = "The speed is a number from 1 to 1000";
    return std::nullopt;
  }
  if (!takeServer(parser, kServer, options.servers.maker) || !takeServer(parser, kRegistration, options.servers.registration)) {
    error = "A server is a scheme and a host, such as http://127.0.0.1:8080";
    return std::nullopt;
  }
  return options;
}

}  // namespace firmlane::sim
