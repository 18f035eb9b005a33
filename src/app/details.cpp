#include "app/details.h"

#include <algorithm>
#include <exception>

#include "record/record_text.h"
#include "state/text.h"

namespace firmlane {

namespace {

std::string line(const char* name, const std::string& value) {
  return value.empty() ? std::string() : std::string(name) + ": " + value + "\n";
}

std::string lineInQuotes(const char* name, const std::string& value) {
  return value.empty() ? value : line(name, inQuotes(value));
}

std::string namesOf(const BuildSwitches& switches) {
  return std::string(switches.factoryBuild ? "factory " : "") + (switches.inHouseBuild ? "in-house " : "") +
         (switches.debugView ? "debug" : "");
}

}  // namespace

Details::Details(Record& record, Program& program, Servers servers, const BuildSwitches& switches, Surroundings surroundings)
    : record_(record),
      state_(program.state()),
      activity_(program.activity()),
      servers_(std::move(servers)),
      switches_(switches),
      surroundings_(std::move(surroundings)),
      listening_(program.activity().listen([this] { tellDoing(); })) {}

/// How far it has come is not told: that would be an entry for each byte.
void Details::tellDoing() {
  if (std::uncaught_exceptions() > 0) {
    return;  // the program ends, and nothing else does
  }
  const Activity::Phase phase = activity_.now();
  if (phase.doing == told_.doing && phase.since == told_.since && phase.part == told_.part) {
    return;
  }
  const bool runs = std::any_of(activity_.processors().begin(), activity_.processors().end(),
                                [](const ProcessorReport& report) { return report.state == ProcessorState::Running; });
  if (phase.doing == Doing::Nothing && runs) {
    return;  // between two steps
  }
  told_ = phase;
  std::string words = nameOf(phase.doing);
  for (const ProcessorReport& report : activity_.processors()) {
    words += report.state == ProcessorState::Running ? ", " + report.name : "";
  }
  record_.doing(phase.parts > 0 ? words + ", " + std::to_string(phase.part) + " of " + std::to_string(phase.parts) : words);
}

std::string Details::head() const {
  const std::string hint = surroundings_.portHint ? surroundings_.portHint(state_.ComPort) : std::string();
  const std::string port = state_.ComPort > 0
                               ? "COM " + std::to_string(state_.ComPort) + (hint.empty() ? std::string() : " (" + hint + ")")
                               : std::string();
  return line("program", "Firmlane " + dotted(kVersionMajor, kVersionMinor) + "." + std::to_string(kVersionRevision)) +
         line("qt", surroundings_.qtVersion) + line("system", surroundings_.system) +
         line("directory", escaped(surroundings_.directory)) + line("switches", namesOf(switches_)) +
         line("server", servers_.maker) + line("registration", servers_.registration) + lineInQuotes("port", port) +
         lineInQuotes("doing", record_.doingThen()) + lineInQuotes("failure", record_.failure()) +
         lineInQuotes("cause", record_.cause());
}

}  // namespace firmlane
