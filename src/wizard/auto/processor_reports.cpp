#include "wizard/auto/processor_reports.h"

#include <algorithm>
#include <string>

#include "state/text.h"

namespace firmlane {

namespace {

/// The version in a caption of the table; empty when it stands for none.
std::string versionOf(const Label& label) {
  const std::string text = label.Caption;
  return leadingNumber(text) > 0 ? text : std::string();
}

}  // namespace

/// A unit that could not be read may have a second section: it has one if that is to be programmed.
bool ProcessorReports::isThere(const UpdateStep& step) const {
  const bool second = product_.rows[static_cast<std::size_t>(step.row)].secondSection;
  return !second || setting_.state.HasRf2 || row(step).selection.checked();
}

ProcessorReport ProcessorReports::report(const UpdateStep& step) const {
  ProcessorReport report{
      .target = step.target, .name = step.name, .number = std::stoi(step.ProcessorNo), .wanted = versionOf(row(step).current)};
  const auto& known = setting_.activity.processors();
  const auto before = std::find_if(known.begin(), known.end(), [&](const auto& other) { return other.target == report.target; });
  if (before != known.end()) {
    report.before = before->before;
    report.state = before->state;
  } else if (!setting_.state.RecoverChosen) {
    report.before = versionOf(row(step).inUnit);
  }
  const bool selected = row(step).selection.checked();
  const bool ended = report.state == ProcessorState::Done || report.state == ProcessorState::Failed;
  if (selected && report.state != ProcessorState::Failed) {
    report.state = ProcessorState::Pending;
  } else if (!ended) {
    report.state = ProcessorState::NotSelected;
  }
  return report;
}

void ProcessorReports::tellSelected() {
  std::vector<ProcessorReport> reports;
  for (const UpdateStep& step : product_.steps) {
    if (isThere(step)) {
      reports.push_back(report(step));
    }
  }
  setting_.activity.setProcessors(product_.ProductCode, std::move(reports));
}

void ProcessorReports::tellReadAgain() {
  std::vector<ProcessorReport> reports = setting_.activity.processors();
  for (ProcessorReport& report : reports) {
    for (const UpdateStep& step : product_.steps) {
      if (report.target == step.target) {
        report.after = versionOf(row(step).inUnit);
      }
    }
    const bool behind = !report.after.empty() && leadingNumber(report.after) < leadingNumber(report.wanted);
    if (report.state == ProcessorState::Done && behind) {
      report.state = ProcessorState::Failed;
    }
  }
  setting_.activity.setProcessors(product_.ProductCode, std::move(reports));
}

}  // namespace firmlane
