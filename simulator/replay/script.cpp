#include "replay/script.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>

#include "record/record_text.h"

namespace firmlane::sim {

namespace {

constexpr std::array<std::string_view, 4> kOnControls = {"click", "choose", "type", "close"};
// Words that stood for less have a program that looks at them gone by the time it looks.
constexpr Micros kLasting = 2 * kSecond;
constexpr Micros kPatienceOfScript = 20 * kSecond;

std::string json(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\') {
      result += c;
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04X", static_cast<unsigned>(static_cast<unsigned char>(c)));
      result += escape.data();
    }
  }
  return result + "\"";
}

/// What in a text would be the same on any computer: not the names of directories, servers and devices, nor letters that the
/// console may show in more than one way.
class SameAnywhere {
 public:
  explicit SameAnywhere(const Recording& recording)
      : names_{recording.headOf("directory"), recording.headOf("server"), recording.headOf("registration")} {}

  /// How a path compares with a text, as the console's "wait" has it.
  [[nodiscard]] std::string comparison(const std::string& text) const {
    std::string_view longest;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t other = differing(text, at);
      if (other > 0) {
        longest = std::max(longest, std::string_view(text).substr(begin, at - begin), shorter);
        begin = at + other;
      }
      at += std::max<std::size_t>(other, 1);
    }
    longest = std::max(longest, std::string_view(text).substr(begin), shorter);
    return (longest.size() == text.size() ? " == " : " contains ") + json(longest);
  }

 private:
  static bool shorter(std::string_view a, std::string_view b) { return a.size() < b.size(); }

  /// How many bytes from here on may be others elsewhere.
  [[nodiscard]] std::size_t differing(std::string_view text, std::size_t at) const {
    for (const std::string& name : names_) {
      if (!name.empty() && text.substr(at).starts_with(name)) {
        return name.size();
      }
    }
    const std::size_t port = differingOfPort(text.substr(at));
    return port > 0 ? port : static_cast<unsigned char>(text[at]) >= 0x7F ? 1 : 0;
  }

  /// " (/dev/ttyUSB0)", " has gone: its adapter was pulled" or both: which device it was, and why the system says that it went.
  static std::size_t differingOfPort(std::string_view text) {
    constexpr std::string_view kDevice = " (/dev/";
    constexpr std::string_view kGone = " has gone: ";
    std::size_t end = 0;
    if (text.starts_with(kDevice)) {
      end = std::min(text.find(')'), text.size() - 1) + 1;
    }
    if (text.substr(end).starts_with(kGone)) {
      end = std::min({text.find('\r', end), text.find(" (#", end), text.size()});
    }
    return end;
  }

  std::array<std::string, 3> names_;
};

/// Writes the script as it follows what stands on the screen.
class Script {
 public:
  explicit Script(const Recording& recording) : sameAnywhere_(recording) {
    for (const Entry& entry : recording.entries) {
      take(entry);
    }
    waitForLasting([](const Said&) { return true; }, 0);
    waitForBox();
    // What the program and the unit went on to say to each other takes its time.
    text_ += "sleep " + std::to_string((longer(now_ - stepAt_) + kLasting) / kSecond) + "\n";
  }
  [[nodiscard]] std::string text() const { return text_; }

 private:
  struct Said {
    std::string control;
    std::string words;
    Micros since;
    std::size_t line;
    bool waitedFor;
  };

  void take(const Entry& entry) {
    now_ = entry.time;
    if (entry.kind == "answer") {
      waitForLasting([](const Said&) { return true; }, kLasting);
      step(entry.line);
      waitForBox();
      text_ += entry.text + "\n";
      stepAt_ = now_;
      box_.clear();
    } else if (std::find(kOnControls.begin(), kOnControls.end(), entry.kind) != kOnControls.end()) {
      act(entry);
    } else if (entry.kind == "box") {
      box_ = sameAnywhere_.comparison(entry.words[2]);
      boxAt_ = entry.time;
    } else if (entry.kind == "says" || entry.kind == "gone") {
      forget([&entry](const Said& said) { return said.control == entry.words[0]; });
      if (entry.kind == "says") {
        said_.push_back({entry.words[0], entry.words[2], entry.time, entry.line, false});
      }
    } else if (entry.kind == "hide" || entry.kind == "unload") {
      forget([&entry](const Said& said) { return said.control.starts_with(entry.words[0] + "."); });
    }
  }

  void act(const Entry& entry) {
    waitForLasting([](const Said&) { return true; }, kLasting);
    if (!said_.empty()) {
      waitFor(said_.back());
    }
    step(entry.line);
    if (entry.kind != "close") {
      wait(entry.words[0] + ".enabled == true", now_);
    }
    text_ += entry.kind != "type" ? entry.text
                                  : "type " + entry.words[0] + " " + json(entry.words[1] == kNotKept ? "x" : entry.words[1]);
    text_ += "\n";
    stepAt_ = now_;
  }

  void waitForBox() {
    if (!box_.empty()) {
      wait("MessageBox.text" + box_, boxAt_);
    }
  }

  template <typename Which>
  void forget(Which which) {
    waitForLasting(which, kLasting);
    std::erase_if(said_, which);
  }

  template <typename Which>
  void waitForLasting(Which which, Micros span) {
    for (Said& said : said_) {
      if (which(said) && now_ - said.since >= span) {
        waitFor(said);
      }
    }
  }

  void waitFor(Said& said) {
    if (!said.waitedFor) {
      said.waitedFor = true;
      step(said.line);
      wait(said.control + ".caption" + sameAnywhere_.comparison(said.words), said.since);
    }
  }

  static Micros longer(Micros span) { return span > 0 ? span + span / 4 : 0; }
  void step(std::size_t line) { text_ += "# line " + std::to_string(line) + " of the record\n"; }
  /// For as long as the record took from the step before to what is waited for, and some patience.
  void wait(const std::string& what, Micros cameAt) {
    text_ += "wait " + what + " " + std::to_string((longer(cameAt - stepAt_) + kPatienceOfScript) / kSecond) + "\n";
    stepAt_ = std::max(stepAt_, cameAt);
  }

  SameAnywhere sameAnywhere_;
  std::deque<Said> said_;
  std::string box_;  // how its text compares, while one is up
  Micros boxAt_ = 0;
  Micros now_ = 0;
  Micros stepAt_ = 0;
  std::string text_;
};

}  // namespace

std::string consoleScript(const Recording& recording) { return Script(recording).text(); }

}  // namespace firmlane::sim
