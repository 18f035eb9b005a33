#include "platform/qt/standard_input.h"

#include <utility>

namespace firmlane {

StandardInput::StandardInput(std::function<void(const std::string&)> line, std::function<void()> ended, EndOfFile endOfFile)
    : line_(std::move(line)),
      ended_(std::move(ended)),
      endOfFile_(endOfFile),
      reader_([this](std::string_view bytes) { bytes.empty() ? end() : split(bytes); }) {}

void StandardInput::end() {
  if (!pending_.empty()) {
    endLine();  // a last line without its end
  }
  if (endOfFile_ == EndOfFile::Ends || InputReader::isPipe()) {
    ended_();
  }
}

void StandardInput::split(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    // A flood without a line end must not fill the memory.
    pending_.append(bytes.substr(0, end).substr(0, kLongest + 1 - pending_.size()));
    if (end == std::string_view::npos) {
      return;
    }
    endLine();
    bytes.remove_prefix(end + 1);
  }
}

/// The editors and shells of Windows put a mark before the first line that says that UTF-8 follows.
void StandardInput::endLine() {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  std::string line = std::exchange(pending_, {});
  if (!std::exchange(begun_, true) && line.starts_with(kMark)) {
    line.erase(0, kMark.size());
  }
  line_(line);
}

void StandardInput::drain(int milliseconds) { reader_.drain(milliseconds); }

}  // namespace firmlane
