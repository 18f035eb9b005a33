// One released system: what a SYSTEM line of an update list and a record of a system version file hold.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace firmlane {

/// A text of N characters: padded with blanks on the right, cut on the right. One never assigned to holds N zero characters.
template <std::size_t N>
class FixedText {
 public:
  static constexpr std::size_t kSize = N;

  FixedText& operator=(std::string_view text) {
    chars_.fill(' ');
    std::copy_n(text.begin(), std::min(N, text.size()), chars_.begin());
    return *this;
  }
  [[nodiscard]] std::string_view view() const { return {chars_.data(), N}; }
  [[nodiscard]] std::string text() const { return std::string(view()); }
  /// The text without blanks at either end; empty for one never assigned to.
  [[nodiscard]] std::string trimmed() const {
    std::string_view text = view().substr(0, view().find('\0'));
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
      return {};
    }
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
  }
  friend bool operator==(const FixedText&, const FixedText&) = default;

 private:
  std::array<char, N> chars_{};
};

struct SystemRecord {
  FixedText<10> SystemVersion;
  FixedText<20> ReleaseDate;
  FixedText<100> SystemNote;
  FixedText<10> DspVersion;
  FixedText<10> HubVersion;
  /// Wireless: the RF image; Velarc: the Front image.
  FixedText<10> RfVersion;
  /// Wireless: the Front image; Velarc: not filled.
  FixedText<10> FrontVersion;
  /// Directory on the maker's web server that holds this system's files.
  FixedText<20> SystemDir;
  friend bool operator==(const SystemRecord&, const SystemRecord&) = default;

  /// Calls f(name, field) for each field, in the order of the record.
  template <typename Record, typename F>
  static void forEachField(Record& record, F&& f) {
    f("SystemVersion", record.SystemVersion);
    f("ReleaseDate", record.ReleaseDate);
    f("SystemNote", record.SystemNote);
    f("DspVersion", record.DspVersion);
    f("HubVersion", record.HubVersion);
    f("RfVersion", record.RfVersion);
    f("FrontVersion", record.FrontVersion);
    f("SystemDir", record.SystemDir);
  }
};

}  // namespace firmlane
