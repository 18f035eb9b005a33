#include "replay/script.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>

#include "record/record_text.h"

namespace firmlane::sim {

namespace {

constexpr const char* kPatience = " 300\n";
constexpr std::array<std::string_view, 4> kOnControls = {"click", "choose", "type", "close"};

std::string json(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\') {
      result += c;
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04X", static_cast<unsigned>(byte));
      result += escape.data();
    }
  }
  return result + "\"";
}

/// What stands on the screen, the latest words last.
class Screen {
 public:
  void take(const Entry& entry) {
    if (entry.kind == "box" || entry.kind == "answer") {
      box_ = entry.kind == "box";
    } else if (entry.kind == "says") {
      forget(entry.words[0], true);
      words_.emplace_back(entry.words[0], entry.words[2]);
    } else if (entry.kind == "gone") {
      forget(entry.words[0], true);
    } else if (entry.kind == "hide" || entry.kind == "unload") {
      forget(entry.words[0] + ".", false);
    }
  }
  [[nodiscard]] std::string wait() const {
    if (box_) {
      return std::string("wait messagebox") + kPatience;
    }
    return words_.empty() ? std::string()
                          : "wait " + words_.back().first + ".caption == " + json(words_.back().second) + kPatience;
  }

 private:
  void forget(const std::string& name, bool whole) {
    std::erase_if(words_, [&](const auto& said) { return whole ? said.first == name : said.first.starts_with(name); });
  }

  std::deque<std::pair<std::string, std::string>> words_;
  bool box_ = false;
};

std::string command(const Entry& entry) {
  if (entry.kind == "type") {
    return "type " + entry.words[0] + " " + json(entry.words[1] == kNotKept ? "x" : entry.words[1]) + "\n";
  }
  return entry.text + "\n";
}

}  // namespace

std::string consoleScript(const Recording& recording) {
  std::string script;
  Screen screen;
  for (const Entry& entry : recording.entries) {
    if (entry.kind == "answer") {
      script += screen.wait() + command(entry);
    } else if (std::find(kOnControls.begin(), kOnControls.end(), entry.kind) != kOnControls.end()) {
      script += screen.wait();
      script += entry.kind == "close" ? "" : "wait " + entry.words[0] + ".enabled == true" + kPatience;
      script += command(entry);
    }
    screen.take(entry);
  }
  return script + screen.wait();
}

}  // namespace firmlane::sim
