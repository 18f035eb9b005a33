// A record read back from its text, as a customer sent it: checked line by line, so that whoever plays it meets no surprises.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/bytes.h"
#include "platform/clock.h"
#include "record/record_text.h"

namespace firmlane::sim {

/// Bytes as a record holds them: a few in full, of many the first, the last, their number and sum.
struct RecordedBytes {
  std::size_t size = 0;
  bool inFull = true;
  Bytes first;  // all of them when they are known in full
  Bytes last;
  RecordSum sum = kSumOfNothing;
};

/// One line of a record.
struct Entry {
  std::size_t line = 0;  // of the text, from 1
  Micros time = 0;
  std::string text;                // as it stands, without the time
  std::string kind;                // its first word
  std::vector<std::string> words;  // the others, escapes undone; without the bytes
  RecordedBytes bytes;             // of sent, heard, body and file

  /// Port number of an entry about the line.
  [[nodiscard]] int port() const;
  /// "#N" and the words of a failure, as a number and a text.
  [[nodiscard]] int failureNumber() const;
  [[nodiscard]] const std::string& failureText() const { return words.back(); }
};

struct Recording {
  std::map<std::string, std::string> head;  // "program", "port", ...
  std::vector<Entry> entries;
  std::size_t dropped = 0;  // older entries that had made room
  bool complete = false;    // its last line is there

  /// The value of that name in the head; empty when there is none.
  [[nodiscard]] std::string headOf(const std::string& name) const;
  /// The files that were there when the program first turned to them.
  [[nodiscard]] std::vector<const Entry*> filesAtFirst() const;
  /// An entry of a program whose directory is `mine`, as it would read in the record's directory.
  [[nodiscard]] std::string asInItsDirectory(std::string entry, const std::string& mine) const;
};

/// Reads a record. What stands in front of its title is passed over, quote signs of a mail before each line too. Throws Failure
/// with the number of the line and what is wrong with it.
Recording readRecording(std::string_view text);

}  // namespace firmlane::sim
