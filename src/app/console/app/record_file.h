// The file of --record: the record as it grows.
#pragma once

#include <fstream>
#include <string>

#include "platform/event_queue.h"
#include "record/record.h"

namespace firmlane {

class RecordFile {
 public:
  /// Writes the title and `head`, then each entry as it comes. Queue and record outlive it. Throws Failure when the file cannot
  /// be written.
  RecordFile(const std::string& path, EventQueue& queue, Record& record, const std::string& head);
  /// Writes what is still open, and the last line.
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

 private:
  void write(const std::string& line);

  std::string path_;
  Record& record_;
  std::ofstream file_;
  bool told_ = false;  // that it cannot be written any more
  Timer settling_;
};

}  // namespace firmlane
