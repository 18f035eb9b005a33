#include "record_file.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <utility>

#include "platform/system_path.h"

namespace firmlane {

namespace {
constexpr int kSettle = 500;  // ms
}  // namespace

RecordFile::RecordFile(const std::string& path, EventQueue& queue, Record& record, const std::string& head)
    : path_(path), record_(record), file_(systemPath(path), std::ios::binary | std::ios::trunc), settling_(queue) {
  if (!file_) {
    throw Failure(errno, std::string(std::strerror(errno)) + ": " + path);
  }
  write(std::string(Record::kTitle) + "\n" + head.substr(0, head.size() - 1));
  record_.follow([this](const std::string& entry) { write(entry); });
  settling_.OnTimer = [this] { record_.settle(); };
  settling_.start(kSettle);
}

RecordFile::~RecordFile() {
  record_.settleAll();
  record_.follow(nullptr);
  write(Record::kEnd);
}

void RecordFile::write(const std::string& line) {
  file_ << line << '\n' << std::flush;
  if (!file_ && !std::exchange(told_, true)) {
    std::cerr << "firmlane-console: the record is not written any more: " << std::strerror(errno) << ": " << path_ << std::endl;
  }
}

}  // namespace firmlane
