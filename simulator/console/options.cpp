#include "console/options.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>

#include "platform/failure.h"
#include "platform/system_path.h"
#include "web/web_reply.h"

namespace firmlane::sim {

namespace {

constexpr double kFastest = 1000;
constexpr std::size_t kLargestImage = 1U << 20U;
constexpr int kLargestPort = 65535;

[[noreturn]] void refuse(const std::string& why) { throw Failure(failure_number::kInvalidArgument, why); }

double numberIn(const std::string& text, double least, double most, const std::string& option) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !(number >= least && number <= most)) {
    refuse(option + " takes a number from " + std::to_string(static_cast<long>(least)) + " to " +
           std::to_string(static_cast<long>(most)));
  }
  return number;
}

struct Option {
  const char* name;
  const char* value;  // null for an option without one
  const char* help;
  void (*take)(SimulatorOptions& options, const std::string& value);
};

constexpr std::array<Option, 15> kOptions = {{
    {"--unit", "NAME", "the unit at the far end of the line",
     [](SimulatorOptions& options, const std::string& value) {
       options.model = findUnitModel(value);
       if (options.model == nullptr) {
         refuse("There is no unit " + value);
       }
     }},
    {"--link", "PATH", "makes a symbolic link to the unit's serial device, and removes it in the end",
     [](SimulatorOptions& options, const std::string& value) { options.link = value; }},
    {"--time-scale", "K", "the unit's time runs K times as fast, 1 to 1000",
     [](SimulatorOptions& options, const std::string& value) {
       options.timeScale = numberIn(value, 1, kFastest, "--time-scale");
     }},
    {"--fault", "NAME", "the unit misbehaves; may be given more than once",
     [](SimulatorOptions& options, const std::string& value) {
       if (!setFault(options.faults, value)) {
         refuse("There is no fault " + value);
       }
     }},
    {"--off", nullptr, "the unit is switched off at first; otherwise it has been running for long",
     [](SimulatorOptions& options, const std::string&) { options.startsOff = true; }},
    {"--dir", "DIR", "where image files go; the current directory when left out",
     [](SimulatorOptions& options, const std::string& value) { options.directory = value; }},
    {"--make-images", "VERSION", "first writes the image files of the unit, such as 2.31 or 5.0.2; without --unit those of all",
     [](SimulatorOptions& options, const std::string& value) {
       options.images = parseVersion(value);
       if (!options.images) {
         refuse("--make-images takes a version such as 2.31 or 5.0.2");
       }
     }},
    {"--image-size", "BYTES", "code bytes of each image, 64 and more (a front panel takes at most 8190)",
     [](SimulatorOptions& options, const std::string& value) {
       options.imageSize = static_cast<std::size_t>(numberIn(value, kSmallestFirmware, kLargestImage, "--image-size"));
     }},
    {"--serve", nullptr, "runs the maker's web server and the registration server on loopback; with --unit or without",
     [](SimulatorOptions& options, const std::string&) { options.serve = true; }},
    {"--port", "N", "where they listen, 1 to 65535; a free port when left out",
     [](SimulatorOptions& options, const std::string& value) {
       options.webPort = static_cast<int>(numberIn(value, 1, kLargestPort, "--port"));
     }},
    {"--replay", "FILE", "plays a record: stands at the line as its unit, and as its web server; --dir has files that it lacks",
     [](SimulatorOptions& options, const std::string& value) { options.replay = value; }},
    {"--script", "FILE", "prints what the user of a record did, as commands for firmlane-console",
     [](SimulatorOptions& options, const std::string& value) { options.script = value; }},
    {"--files", "DIR", "with --script: puts the files there that the record's program found; those it lacks are taken from --dir",
     [](SimulatorOptions& options, const std::string& value) { options.files = value; }},
    {"--help", nullptr, "this text", [](SimulatorOptions& options, const std::string&) { options.help = true; }},
    {"--version", nullptr, "the version", [](SimulatorOptions& options, const std::string&) { options.version = true; }},
}};

template <typename Names>
std::string joined(const Names& names) {
  std::string text;
  for (const std::string_view name : names) {
    text.append(text.empty() ? "" : " ").append(name);
  }
  return text;
}

}  // namespace

SimulatorOptions readOptions(const std::vector<std::string>& arguments) {
  SimulatorOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto* option =
        std::find_if(kOptions.begin(), kOptions.end(), [&](const Option& known) { return known.name == arguments[i]; });
    if (option == kOptions.end()) {
      refuse("Unknown option " + arguments[i]);
    }
    std::string value;
    if (option->value != nullptr) {
      if (i + 1 == arguments.size()) {
        refuse(arguments[i] + " needs " + option->value);
      }
      value = arguments[++i];
    }
    option->take(options, value);
  }
  if (options.model == nullptr && !options.images && !options.serve && options.replay.empty() && options.script.empty() &&
      !options.help && !options.version) {
    refuse("--unit, --serve, --replay, --script or --make-images is needed; --help tells more");
  }
  return options;
}

std::string usage() {
  std::string text =
      "firmlane-simulator [options]: a simulated unit on a pseudo-terminal, which a program opens as a serial port.\n\n";
  for (const Option& option : kOptions) {
    std::string left = std::string("  ") + option.name + (option.value != nullptr ? std::string(" ") + option.value : "");
    left.resize(std::max<std::size_t>(left.size() + 1, 26), ' ');
    text += left + option.help + "\n";
  }
  std::vector<std::string_view> units;
  for (const UnitModel& model : unitModels()) {
    units.emplace_back(model.name);
  }
  return text + "\nUnits: " + joined(units) + "\nFaults: " + joined(faultNames()) +
         "\nFaults of the web server: " + joined(webFaultNames()) +
         "\n\nIt prints one JSON object a line: first {\"pty\":\"/dev/pts/3\",...} and {\"server\":\"http://127.0.0.1:8080\"}, "
         "then\n"
         "what happens in the unit and which pages are asked for.\n"
         "Commands on standard input, each answered by {\"ok\":true} or {\"ok\":false,\"error\":\"...\"}:\n"
         "  power on|off           the power switch\n"
         "  fault NAME             one more fault; \"fault none\" clears them\n"
         "  serial N               sets the serial number\n"
         "  version NAME VERSION   sets what a processor runs, such as: version DSP 2.30\n"
         "  state                  tells model, power, serial number, versions and what the unit is doing\n"
         "  web fault NAME [PATH]  how requests go wrong from now on, all or those of one path; \"web fault none\" clears them\n"
         "  pull                   pulls the adapter between program and unit, for good\n"
         "  quit                   ends; so does the end of standard input when it is a pipe\n";
}

void writeImages(const SimulatorOptions& options) {
  if (!options.images) {
    return;
  }
  for (const UnitModel& model : unitModels()) {
    if (options.model != nullptr && options.model != &model) {
      continue;
    }
    for (const ProcessorModel& processor : model.processors) {
      const std::size_t size = options.imageSize > 0 ? options.imageSize : usualImageSize(processor.image);
      writeImage(systemPath(options.directory), processor.image, *options.images,
                 processor.loader == LoaderKind::Front ? std::min(size, kLargestFrontImage) : size);
    }
  }
}

}  // namespace firmlane::sim
