#include "catalogue/firmware_set.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <sstream>

#include "platform/failure.h"
#include "platform/partial_file.h"
#include "state/file_names.h"

namespace firmlane {

namespace {

// What the record of a set that is to take its place begins and ends with. Row 0 stands behind the names.
constexpr const char* kRecordName = "firmlane.set";
constexpr const char* kLockName = "firmlane.lock";
constexpr const char* kHead = "firmlane set 1";
constexpr const char* kEnd = "end";
/// In place of a record: what lies there belongs to no set.
constexpr const char* kNoSet = "no set\n";
constexpr const char* kPart = PartialFile::kEnding;

constexpr const char* kVelarcPrefix = "vrc";
constexpr const char* kSystemFiles[] = {file_name::kWirelessSystems, file_name::kVelarc2Systems};

bool isSetFile(const std::string& name) {
  return std::find(std::begin(file_name::kSetFiles), std::end(file_name::kSetFiles), name) != std::end(file_name::kSetFiles);
}

bool isSystemFile(const std::string& name) {
  return std::find(std::begin(kSystemFiles), std::end(kSystemFiles), name) != std::end(kSystemFiles);
}

}  // namespace

FirmwareSet::FirmwareSet(const Files& files) : files_(files), recordPath_(own(kRecordName)) {}

FirmwareSet::Hold::Hold(FirmwareSet& set) : set_(set), busy_(!set.lock()) {}

FirmwareSet::Fetch::Fetch(FirmwareSet& set) : set_(set), hold_(set) {
  set_.throwIfBusy(hold_);
  set_.prepare();
  set_.fetching_ = true;
}

FirmwareSet::Fetch::~Fetch() {
  set_.fetching_ = false;
  set_.fetched_.clear();
  try {
    if (!takingPlace_) {
      set_.discardAside();
    }
  } catch (const Failure&) {
    return;  // the next look removes it
  }
}

void FirmwareSet::Fetch::complete(const std::string& systemsName, ByteSpan row) {
  const Record record{systemsName, {row.begin(), row.end()}, set_.fetched_};
  takingPlace_ = true;  // from here on the record decides, if it comes to be
  set_.write(record);
  set_.finish(record);
}

std::string FirmwareSet::place(const std::string& name) {
  if (!fetching_) {
    return files_.path(name);
  }
  if (std::find(fetched_.begin(), fetched_.end(), name) == fetched_.end()) {
    fetched_.push_back(name);
  }
  return aside(name);
}

void FirmwareSet::breakUp(const std::string& name) {
  if (fetching_ || !isSetFile(name)) {
    return;
  }
  const bool velarc = name.starts_with(kVelarcPrefix);
  const std::string systemsName = velarc ? file_name::kVelarc2Systems : file_name::kWirelessSystems;
  if (!Files::isMissing(files_.path(systemsName))) {
    const Hold hold(*this);
    throwIfBusy(hold);
    setRow(systemsName, Bytes(kSystemRowBytes));
  }
}

void FirmwareSet::settle() {
  if (fetching_ || !anythingLeft()) {
    return;
  }
  const Hold hold(*this);
  if (!hold.busy()) {
    settleLocked();
  } else if (!Files::isMissing(recordPath_)) {
    throw Failure(EBUSY, "Another program is just putting firmware into " + files_.programDirectory());
  }
}

void FirmwareSet::saveSystems(const std::string& systemsName, Bytes content) {
  const Hold hold(*this);
  if (hold.busy()) {
    return;
  }
  const Bytes now = systems(systemsName);
  content.resize(std::max(content.size(), kSystemRowBytes));
  std::copy_n(now.begin(), kSystemRowBytes, content.begin());
  files_.replace(files_.path(systemsName), content);
}

void FirmwareSet::throwIfBusy(const Hold& hold) const {
  if (hold.busy()) {
    throw Failure(EBUSY, "Another program is downloading firmware into " + files_.programDirectory());
  }
}

/// False while another program has the lock. Some shares have none; there the set is still put in place as a whole.
bool FirmwareSet::lock() {
  try {
    auto taken = FileLock::tryTake(own(kLockName));
    if (!taken) {
      return false;
    }
    lock_.emplace(std::move(*taken));
  } catch (const Failure&) {
    lock_.reset();
  }
  return true;
}

bool FirmwareSet::anythingLeft() const {
  return !Files::isMissing(recordPath_) || !Files::isMissing(recordPath_ + kPart) ||
         std::any_of(std::begin(file_name::kSetFiles), std::end(file_name::kSetFiles), [this](const char* name) {
           return !Files::isMissing(aside(name)) || !Files::isMissing(aside(name) + kPart);
         });
}

/// Makes way for another set. One that cannot come to its end stays none until another is complete.
void FirmwareSet::prepare() {
  try {
    settleLocked();
  } catch (const Failure&) {
    files_.replaceText(recordPath_, kNoSet);
    discardAside();
  }
}

void FirmwareSet::settleLocked() {
  if (Files::isMissing(recordPath_)) {
    discardAside();
  } else {
    finish(readRecord());
  }
}

/// Every step can be done again: it is, from the first one on, for as long as the record is there. Row 0 is written last, and
/// with its name the others are on the disk too, before the record goes.
void FirmwareSet::finish(const Record& record) {
  Disk& disk = files_.disk();
  for (const std::string& name : record.names) {
    if (!Files::isMissing(aside(name))) {
      disk.rename(aside(name), files_.path(name));
    }
  }
  setRow(record.systemsName, record.row);
  disk.remove(recordPath_);
}

void FirmwareSet::discardAside() {
  for (const char* name : file_name::kSetFiles) {
    files_.disk().remove(aside(name));
    files_.disk().remove(aside(name) + kPart);
  }
  files_.disk().remove(recordPath_ + kPart);
}

void FirmwareSet::setRow(const std::string& systemsName, ByteSpan row) {
  Bytes content = systems(systemsName);
  std::copy(row.begin(), row.end(), content.begin());
  files_.replace(files_.path(systemsName), content);
}

/// The file as it is, with zero bytes for a row 0 that it lacks.
Bytes FirmwareSet::systems(const std::string& systemsName) const {
  const std::string path = files_.path(systemsName);
  Bytes content = Files::isMissing(path) ? Bytes() : Files::read(path);
  content.resize(std::max(content.size(), kSystemRowBytes));
  return content;
}

void FirmwareSet::write(const Record& record) {
  std::string text = std::string(kHead) + "\n" + record.systemsName + "\n";
  for (const std::string& name : record.names) {
    text += name + "\n";
  }
  text += std::string(kEnd) + "\n" + std::string(record.row.begin(), record.row.end());
  files_.replaceText(recordPath_, text);
}

FirmwareSet::Record FirmwareSet::readRecord() const {
  std::istringstream text(Files::readText(recordPath_));
  std::string line;
  Record record;
  const bool begins = std::getline(text, line) && line == kHead && std::getline(text, record.systemsName);
  while (std::getline(text, line) && line != kEnd) {
    record.names.push_back(line);
  }
  record.row.assign(std::istreambuf_iterator<char>(text), {});
  const bool known = std::all_of(record.names.begin(), record.names.end(), isSetFile) && isSystemFile(record.systemsName);
  if (!begins || line != kEnd || !known || record.row.size() != kSystemRowBytes) {
    throw Failure(failure_number::kPathAccess, "The firmware files there are not one set: " + recordPath_);
  }
  return record;
}

}  // namespace firmlane
