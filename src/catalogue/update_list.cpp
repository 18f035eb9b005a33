#include "catalogue/update_list.h"

#include <algorithm>

#include "state/text.h"

namespace firmlane {

namespace {

constexpr std::string_view kBar = "|";
constexpr std::string_view kLineFeed = "\n";
constexpr std::string_view kSoftwareTag = "REMOTE";
constexpr std::string_view kSystemTag = "SYSTEM";

Failure tooLong() { return {failure_number::kOverflow, "The list is longer than 32767 characters"}; }
Failure damaged() { return {failure_number::kInvalidArgument, "The list is cut short or damaged"}; }

/// The text with its positions, counted from 1; 0 stands for "nowhere". No position goes beyond 16 bits with a sign.
class ListText {
 public:
  explicit ListText(std::string_view text) : text_(text) {}

  [[nodiscard]] int find(int start, std::string_view what) const {
    const std::int32_t position = firmlane::find(text_, start, what);
    if (position > kLongestList) {
      throw tooLong();
    }
    return position;
  }

  /// The `length` - 1 characters behind a position, fewer at the end of the text.
  [[nodiscard]] std::string_view behind(int position, int length) const {
    if (length < 1) {
      throw damaged();
    }
    return from(position + 1).substr(0, static_cast<std::size_t>(length - 1));
  }

  [[nodiscard]] std::string_view from(int position) const {
    return text_.substr(std::min(text_.size(), static_cast<std::size_t>(position - 1)));
  }

  [[nodiscard]] int size() const {
    if (text_.size() > kLongestList) {
      throw tooLong();
    }
    return static_cast<int>(text_.size());
  }

 private:
  std::string_view text_;
};

void addLocation(UpdateList& list, std::string_view location) {
  if (list.locations.size() == kMostEntries) {
    throw Failure(failure_number::kSubscriptOutOfRange, "The list names more than 21 versions");
  }
  list.locations.push_back(location);
}

/// Reads up to the word that ends the firmware entries. Every turn adds an entry, so their limit ends the loop whatever the text.
int readEntries(const ListText& text, std::string_view entryTag, UpdateList& list) {
  int pos = text.find(text.find(1, entryTag) + 1, kBar);
  int length = text.find(pos + 1, kBar) - pos;
  const int remote = text.find(1, kSoftwareTag);
  while (pos < remote) {
    list.names.push_back(text.behind(pos, length));
    pos = text.find(pos + 1, kBar);
    length = text.find(pos, kLineFeed) - pos;
    addLocation(list, text.behind(pos, length));
    if (text.find(pos + 1, "V") > 0) {
      pos = text.find(pos + 1, kBar);
      length = text.find(pos + 1, kBar) - pos;
    } else {
      pos = text.find(pos + 1, "v");
    }
  }
  return pos;
}

void readSystem(std::string_view line, std::size_t fields, UpdateList& list) {
  if (list.systems.size() == kMostSystems) {
    throw Failure(failure_number::kSubscriptOutOfRange, "The list names more than 11 systems");
  }
  std::vector<std::string_view>& system = list.systems.emplace_back();
  int a = find(line, 1, kBar) + 1;
  while (system.size() + 1 < fields) {
    // A field has one character at least, so the search for its end starts behind that one.
    const int b = find(line, a + 1, kBar);
    if (b == 0) {
      throw Failure(failure_number::kInvalidArgument, "A SYSTEM line of the list has too few fields");
    }
    system.push_back(line.substr(static_cast<std::size_t>(a - 1), static_cast<std::size_t>(b - a)));
    a = b + 1;
  }
  system.push_back(ListText(line).from(a));
}

void readSystems(const ListText& text, int pos, std::size_t fields, UpdateList& list) {
  list.lastSystem = 0;
  for (;; ++*list.lastSystem) {
    pos = text.find(pos + 1, kSystemTag);
    if (pos == 0) {
      throw Failure(failure_number::kInvalidArgument, "The list names no released system");
    }
    const int eol = text.find(pos + 1, kCr);
    readSystem(text.behind(pos - 1, eol - pos + 1), fields, list);
    if (text.find(eol + 2, kSystemTag) == 0) {
      return;
    }
    pos = eol + 1;
  }
}

void readSoftware(const ListText& text, UpdateList& list) {
  int pos = text.find(text.find(1, kSoftwareTag) + 1, kBar);
  const int size = text.size();
  while (pos < size) {
    const int bar = text.find(pos + 1, kBar);
    list.names.push_back(text.behind(pos, bar - pos));
    const int eol = text.find(bar, kLineFeed);
    if (eol == 0) {
      addLocation(list, text.from(bar + 1));
      return;
    }
    addLocation(list, text.behind(bar, eol - bar));
    const int start = text.find(bar, kSoftwareTag);
    if (start == 0) {
      return;
    }
    pos = text.find(start, kBar);
  }
}

template <typename Reader>
UpdateList readList(Reader reader) {
  UpdateList list;
  try {
    reader(list);
  } catch (const Failure& failure) {
    list.failure = failure;
  }
  return list;
}

}  // namespace

UpdateList readFirmwareList(std::string_view content, std::string_view entryTag, std::size_t systemFields) {
  return readList([&](UpdateList& list) {
    const ListText text(content);
    const int pos = readEntries(text, entryTag, list);
    if (systemFields > 0) {
      readSystems(text, pos, systemFields, list);
    }
    static_cast<void>(text.size());  // even when nothing that was looked for stands so far behind
  });
}

UpdateList readSoftwareList(std::string_view content) {
  return readList([&](UpdateList& list) { readSoftware(ListText(content), list); });
}

}  // namespace firmlane
