#include "console/unit_console.h"

#include <charconv>

namespace firmlane::sim {

namespace {

constexpr std::int32_t kLargestSerial = 0x1FFFFF;  // 21 bits on the wire

QString shown(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

std::pair<std::string, std::string> splitAt(const std::string& text, std::size_t blank) {
  return blank == std::string::npos ? std::pair(text, std::string()) : std::pair(text.substr(0, blank), text.substr(blank + 1));
}

}  // namespace

UnitConsole::UnitConsole(Unit& unit, std::function<void(const QJsonObject&)> print) : unit_(unit), print_(std::move(print)) {
  unit_.onHappening = [this](const Happening& happening) {
    QJsonObject line{{"event", shown(happening.what)}, {"text", shown(happening.text)}};
    if (!happening.processor.empty()) {
      line["processor"] = shown(happening.processor);
    }
    print_(line);
  };
}

UnitConsole::~UnitConsole() { unit_.onHappening = nullptr; }

bool UnitConsole::command(const std::string& line) {
  const auto [verb, argument] = splitAt(line, line.find(' '));
  if (verb.empty()) {
    return true;
  }
  if (verb == "state") {
    print_({{"ok", true}, {"state", state()}});
    return true;
  }
  const std::string error = verb == "quit" ? "" : carryOut(verb, argument);
  print_(error.empty() ? QJsonObject{{"ok", true}} : QJsonObject{{"ok", false}, {"error", shown(error)}});
  return verb != "quit";
}

std::string UnitConsole::carryOut(const std::string& verb, const std::string& argument) {
  if (verb == "power" && argument == "on") {
    unit_.powerOn();
    return "";
  }
  if (verb == "power" && argument == "off") {
    unit_.powerOff();
    return "";
  }
  if (verb == "fault") {
    return setFault(unit_.faults, argument) ? "" : "no such fault";
  }
  if (verb == "serial") {
    std::int32_t serial = -1;
    const auto [end, error] = std::from_chars(argument.data(), argument.data() + argument.size(), serial);
    if (error != std::errc() || *end != '\0' || serial < 0 || serial > kLargestSerial) {
      return "serial takes a number from 0 to " + std::to_string(kLargestSerial);
    }
    unit_.setSerial(serial);
    return "";
  }
  if (verb == "version") {
    const auto [processor, text] = splitAt(argument, argument.rfind(' '));
    const std::optional<Version> version = parseVersion(text);
    if (unit_.state().find(processor) == nullptr || !version) {
      return "version takes a processor of the unit and a version such as 2.31";
    }
    unit_.setVersion(processor, *version);
    return "";
  }
  return "bad command: " + verb;
}

QJsonObject UnitConsole::state() const {
  const UnitState& state = unit_.state();
  QJsonObject versions;
  for (const ProcessorState& processor : state.processors) {
    versions[processor.model->name] = shown(state.versionOf(processor.model->name));
  }
  return {{"unit", state.model->name},
          {"title", state.model->title},
          {"power", unit_.isOn()},
          {"phase", shown(phaseName(state.phase))},
          {"doing", shown(state.doing())},
          {"serial", state.serial},
          {"versions", versions},
          {"received", static_cast<qint64>(state.received)},
          {"presetLoads", state.presetLoads},
          {"microphoneBytes", static_cast<qint64>(state.microphoneTable.size())},
          {"faults", shown(faultsText(unit_.faults))},
          {"speed", unit_.speed()}};
}

}  // namespace firmlane::sim
