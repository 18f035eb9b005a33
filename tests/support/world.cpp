#include "world.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

namespace firmlane::test {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory() {
  std::random_device random;
  do {
    path_ = fs::temp_directory_path() / ("firmlane-" + std::to_string(random()));
  } while (!fs::create_directory(path_));  // false for one that is there already
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code error;
  fs::remove_all(path_, error);
}

void TemporaryDirectory::write(const std::string& name, const std::string& content) const {
  std::ofstream(path_ / name, std::ios::binary) << content;
}

void TemporaryDirectory::write(const std::string& name, const Bytes& content) const {
  write(name, std::string(content.begin(), content.end()));
}

std::string TemporaryDirectory::read(const std::string& name) const { return Files::readText((path_ / name).string()); }

bool TemporaryDirectory::has(const std::string& name) const { return fs::exists(path_ / name); }

std::string hex(ByteSpan bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), text.empty() ? "%02X" : " %02X", byte);
    text += digits.data();
  }
  return text;
}

Bytes bytes(const std::string& hexText) {
  std::string digits;
  for (const char c : hexText) {
    if (c != ' ') {
      digits += c;
    }
  }
  Bytes result;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    result.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  }
  return result;
}

void Ground::run(Micros span) {
  const Micros end = queue.now() + span;
  while (queue.now() < end) {
    queue.waitEventsUntil(end);
  }
}

void Ground::runUntil(const std::function<bool()>& done, Micros limit) {
  const Micros end = queue.now() + limit;
  while (!done() && queue.now() < end) {
    queue.waitEventsUntil(end);
  }
  if (!done()) {
    throw std::runtime_error("what the test waits for did not come within its limit of virtual time");
  }
}

World::World() {
  screen.press = [this](MessageButton button) { host.answer(button); };
  form1.Load();
  form1.Visible = true;
}

}  // namespace firmlane::test
