#include "wizard/auto/system_file.h"

#include <algorithm>

#include "catalogue/download_source.h"
#include "state/tell_failure.h"
#include "state/text.h"

namespace firmlane {

namespace {

// The last row is written with the others, but a file is read only up to the row before it.
constexpr std::size_t kRowsRead = 200;

SystemRecord recordFrom(ByteSpan bytes) {
  SystemRecord record;
  const char* next = reinterpret_cast<const char*>(bytes.data());
  SystemRecord::forEachField(record, [&next](const char*, auto& field) {
    field = std::string_view(next, field.kSize);
    next += field.kSize;
  });
  return record;
}

/// A place that cannot be looked at may hold the file; who opens it then is told why not.
bool isMissing(const std::string& path) {
  try {
    return Files::isMissing(path);
  } catch (const Failure&) {
    return false;
  }
}

bool isFree(const SystemRecord& row) {
  const std::string_view version = row.SystemVersion.view();
  return version.front() == '\0' || version.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace

Bytes rowOf(const SystemRecord& record) {
  Bytes row;
  row.reserve(kSystemRowBytes);
  SystemRecord::forEachField(
      record, [&row](const char*, const auto& field) { row.insert(row.end(), field.view().begin(), field.view().end()); });
  return row;
}

void SystemFile::ReadSysFile() {
  if (picked_) {
    forgetSet();
  }
  broken_ = false;
  try {
    setting_.set.settle();
  } catch (const Failure& failure) {
    broken_ = true;
    forgetSet();
    fail("reading", failure);
    return;
  }
  try {
    take(Files::read(path()));
  } catch (const Failure& failure) {
    failure.number() == failure_number::kFileNotFound ? create() : fail("reading", failure);
  }
}

void SystemFile::create() {
  try {
    setting_.files.replace(path(), {});
  } catch (const Failure& failure) {
    fail("creating", failure);
  }
}

/// What is on disk, only the disk can say.
void SystemFile::forgetSet() {
  setOnDisk() = {};
  picked_ = false;
}

void SystemFile::fail(const std::string& doing, const Failure& failure) {
  tellFailure(setting_.host, setting_.state, "Error " + doing + " " + product_.sysFileName + ": ", failure);
}

void SystemFile::take(ByteSpan content) {
  const std::size_t rows = std::min(content.size() / kSystemRowBytes, kRowsRead);
  for (std::size_t i = 0; i < rows; ++i) {
    table()[i] = recordFrom(content.subspan(i * kSystemRowBytes, kSystemRowBytes));
  }
}

void SystemFile::SaveSysFile() {
  Bytes content;
  content.reserve(kSystemFileRows * kSystemRowBytes);
  for (const SystemRecord& row : table()) {
    const Bytes bytes = rowOf(row);
    content.insert(content.end(), bytes.begin(), bytes.end());
  }
  try {
    setting_.set.saveSystems(product_.sysFileName, std::move(content));
  } catch (const Failure& failure) {
    fail("writing", failure);
  }
}

void SystemFile::UpdateFileSysVer() {
  const std::array<SystemRecord, kSystems>& systems = setting_.state.*product_.systems;
  int free = firstFreeRow();
  for (const SystemRecord& system : systems) {
    if (!knows(system)) {
      table()[static_cast<std::size_t>(free)] = system;
      free = (free + 1) % kSystemFileRows;  // behind the last row none is free, which counts as row 0
    }
  }
  setOnDisk() = systems.at(static_cast<std::size_t>(setting_.state.SelectedSystem));
  picked_ = true;
}

int SystemFile::firstFreeRow() {
  const auto found = std::find_if(table().begin(), table().end(), isFree);
  return found == table().end() ? 0 : static_cast<int>(found - table().begin());
}

bool SystemFile::knows(const SystemRecord& system) {
  return std::any_of(table().begin() + 1, table().end(),
                     [&system](const SystemRecord& row) { return row.SystemVersion == system.SystemVersion; });
}

bool SystemFile::imagesThere() const {
  if (broken_) {
    return false;
  }
  for (int line = 0; line < product_.firmwareLines; ++line) {
    if (!isMissing(setting_.files.path(firmwareSource(setting_.state, line, {}, {}).name))) {
      return true;
    }
  }
  return false;
}

void SystemFile::ShowSysVer() {
  RunState& state = setting_.state;
  if (state.LegacyLink) {
    if (window_.form.DSP1.Caption == setOnDisk().DspVersion.trimmed()) {
      state.MatchedSystem = 0;
    }
    return;
  }
  state.MatchedSystem = kNoSystem;
  for (int i = 0; i <= product_.lastRowLookedUp; ++i) {
    if (unitRuns(table()[static_cast<std::size_t>(i)])) {
      state.MatchedSystem = static_cast<std::int16_t>(i);  // no stop: the system seen last names the set
    }
  }
}

bool SystemFile::unitRuns(const SystemRecord& system) const {
  for (std::size_t i = 0; i < kVersionRows; ++i) {
    const ProcessorRow& row = product_.rows[i];
    if (row.tellsSystem && trimmed(window_.rows[i].inUnit.Caption.get()) != (system.*row.inSystem).trimmed()) {
      return false;
    }
  }
  return true;
}

const SystemRecord* SystemFile::matched() {
  const int row = setting_.state.MatchedSystem;
  return row == kNoSystem ? nullptr : &table().at(static_cast<std::size_t>(row));
}

}  // namespace firmlane
