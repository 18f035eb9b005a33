#include "wizard/auto/version_table.h"

#include <algorithm>

#include "state/text.h"

namespace firmlane {

namespace {

constexpr Colour kRed = 255;
constexpr Colour kGreen = 65280;
constexpr const char* kNotThere = "N/A";

/// The version in a display name of the form "V", version, "-", text. Throws Failure when there is none.
std::string versionIn(const std::string& displayName) {
  const std::int32_t start = find(displayName, 1, "V");
  const std::int32_t end = find(displayName, start + 1, "-");
  if (start == 0 || end == 0) {
    throw Failure(failure_number::kInvalidArgument, "No version in: " + displayName);
  }
  const std::size_t from = static_cast<std::size_t>(start);
  return twoDecimals(leadingNumber(displayName.substr(from, static_cast<std::size_t>(end - start - 1))));
}

double number(const Label& label) { return leadingNumber(label.Caption.get()); }

}  // namespace

void VersionTable::LoadVersionList() {
  ListBox& list = window_.form.VersionList;
  const auto& systems = setting_.state.*product_.systems;
  list.Clear();
  for (int i = 0; i <= std::min<int>(setting_.state.SystemCount, kSystems - 1); ++i) {
    const SystemRecord& system = systems[static_cast<std::size_t>(i)];
    list.AddItem("System Version: " + system.SystemVersion.trimmed() + ", " + system.ReleaseDate.trimmed() + ", " +
                 system.SystemNote.trimmed());
  }
  list.Show();
}

void VersionTable::ParseVersions() {
  if (setting_.form1.List1.ListCount() == 0) {
    return;
  }
  try {
    readDisplayNames();
  } catch (const Failure&) {
    setting_.host.showFailure(product_.texts.versionsUnreadable);
  }
}

void VersionTable::readDisplayNames() {
  const std::vector<std::string>& lines = setting_.form1.List1.Lines;
  if (lines.size() > FirmwareNames_.size()) {
    throw Failure(failure_number::kSubscriptOutOfRange, "Too many firmware entries");
  }
  std::copy(lines.begin(), lines.end(), FirmwareNames_.begin());
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    window_.rows[i].current.Caption = versionIn(FirmwareNames_[static_cast<std::size_t>(product_.rows[i].listLine)]);
  }
}

void VersionTable::ParseVersionsSys() {
  const auto& systems = setting_.state.*product_.systems;
  const SystemRecord& chosen = systems.at(static_cast<std::size_t>(setting_.state.SelectedSystem));
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    if (product_.rows[i].inSystem != nullptr) {
      window_.rows[i].current.Caption = (chosen.*product_.rows[i].inSystem).trimmed();
    }
  }
}

void VersionTable::LoadVersions() {
  const RunState& state = setting_.state;
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    const ProcessorRow& row = product_.rows[i];
    if (row.secondSection) {
      window_.rows[i].selection.Enabled = state.HasRf2;
    }
    if (row.secondSection && !state.HasRf2) {
      window_.rows[i].inUnit.Caption = kNotThere;
    } else if (row.inUnit[0] != nullptr && !(row.unreadWithOldDsp && state.VrcOldDsp)) {
      window_.rows[i].inUnit.Caption = unitVersion(row);
    }
  }
}

std::string VersionTable::unitVersion(const ProcessorRow& row) const {
  const RunState& state = setting_.state;
  std::string text = dotted(state.*row.inUnit[0], state.*row.inUnit[1]);
  if (row.inUnit[2] != nullptr) {
    text += std::to_string(state.*row.inUnit[2]);
  }
  return twoDecimals(leadingNumber(text));
}

void VersionTable::ClearVersions() {
  for (const VersionRow& row : window_.rows) {
    row.inUnit.Caption = "0.00";
  }
}

void VersionTable::CompareVersions() {
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    if (product_.rows[i].selecting == Selecting::Never) {
      continue;
    }
    const VersionRow& row = window_.rows[i];
    const bool selected = reachable(product_.rows[i]) && number(row.inUnit) < number(row.current);
    row.selection.Value = selected ? 1 : 0;
    row.inUnit.ForeColor = selected ? kRed : kGreen;
  }
  progress_.CalcProgress();
  if (!product_.totalShownAfterQuestions) {
    window_.form.prgTotal.Show();
  }
}

void VersionTable::CompareVersionsFinal() {
  RunState& state = setting_.state;
  const SystemRecord& set = (state.*product_.sysFile)[0];
  if (state.LegacyLink) {
    // Only the DSP tells its version on the older link.
    if (number(window_.form.DSP1) != leadingNumber(set.DspVersion.trimmed())) {
      state.FinalCheckFailed = true;
    }
  } else {
    state.FinalCheckFailed = false;
    for (std::size_t i = 0; i < kVersionRows; ++i) {
      if (failsFinalCheck(product_.rows[i], window_.rows[i].inUnit, set)) {
        state.FinalCheckFailed = true;
      }
    }
  }
  progress_.finish();
}

std::string VersionTable::stillBehind() const {
  const SystemRecord& set = (setting_.state.*product_.sysFile)[0];
  std::string text;
  for (const UpdateStep& step : product_.steps) {
    const ProcessorRow& row = product_.rows.at(static_cast<std::size_t>(step.row));
    const Label& inUnit = window_.rows.at(static_cast<std::size_t>(step.row)).inUnit;
    const std::string wanted = row.inSystem != nullptr ? (set.*row.inSystem).trimmed() : std::string();
    if (reachable(row) && number(inUnit) < leadingNumber(wanted)) {
      text += (text.empty() ? "" : ", ") + std::string(step.name) + " " + inUnit.Caption.get() + " (the set has " + wanted + ")";
    }
  }
  return text;
}

bool VersionTable::failsFinalCheck(const ProcessorRow& row, const Label& inUnit, const SystemRecord& set) const {
  if (row.finalCheck == FinalCheck::None || (row.secondSection && !setting_.state.HasRf2)) {
    return false;
  }
  const double wanted = leadingNumber((set.*row.inSystem).trimmed());
  return row.finalCheck == FinalCheck::Equal ? wanted != number(inUnit) : wanted > number(inUnit);
}

void VersionTable::setUpdateVisible(bool visible) {
  AutoForm& form = window_.form;
  for (Control* control :
       std::initializer_list<Control*>{&form.Shape1, &form.Shape2, &form.Shape3, &form.Shape4, &form.Shape5, &form.Check1,
                                       &form.Check2, &form.Check3, &form.Check4, &form.Check5, &form.Label6}) {
    control->Visible = visible;
  }
}

void VersionTable::ShowTable() {
  AutoForm& form = window_.form;
  ShowUpdate();
  for (Control* control : std::initializer_list<Control*>{&form.Label5, &form.Label3, &form.Label4, &form.Label2, &form.Label8,
                                                          &form.Label11, &form.Label10, &form.Label14}) {
    control->Show();
  }
  for (const VersionRow& row : window_.rows) {
    row.current.Show();
    row.inUnit.Show();
  }
  if (window_.details != nullptr) {
    window_.details->Show();
  }
}

void VersionTable::selectAll() {
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    if (product_.rows[i].selecting != Selecting::Never) {
      window_.rows[i].selection.Value = 1;
    }
  }
}

void VersionTable::selectReachable() {
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    if (reachable(product_.rows[i])) {
      window_.rows[i].selection.Value = 1;
    }
  }
}

void VersionTable::dropUnreachable() {
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    if (!reachable(product_.rows[i])) {
      window_.rows[i].selection.Value = 0;
    }
  }
}

bool VersionTable::anySelected() const {
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    if (product_.rows[i].progressSteps > 0 && window_.rows[i].selection.checked()) {
      return true;
    }
  }
  return false;
}

bool VersionTable::reachable(const ProcessorRow& row) const {
  const RunState& state = setting_.state;
  switch (row.selecting) {
    case Selecting::Never:
      return false;
    case Selecting::OnNormalLink:
      return !state.LegacyLink && (!row.secondSection || state.HasRf2);
    case Selecting::Always:
      break;
  }
  return true;
}

}  // namespace firmlane
