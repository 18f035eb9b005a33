// How long reading an update list takes, and whether that grows with its length alone. Wanted: below 1 ms for 32,000 characters.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "catalogue/update_list.h"

namespace {

using namespace firmlane;

/// The list that is slowest to read: as many entries and systems as it may have, and what is looked for at its end.
std::string longList(std::size_t size) {
  std::string list = "#" + std::string(size / 3, 'x') + "WLS";
  for (std::size_t i = 0; i < kMostEntries; ++i) {
    list += "|v" + std::to_string(i) + "|location\n";
  }
  list += "REMOTE|";
  const std::string system = "SYSTEM|1|2|3|4|5|6|7|8\r\n";
  list += std::string(size - list.size() - 1 - kMostSystems * system.size(), 'y') + "V";
  for (std::size_t i = 0; i < kMostSystems; ++i) {
    list += system;
  }
  return list;
}

double medianMicroseconds(const std::string& list) {
  constexpr int kRounds = 501;
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    const UpdateList firmware = readFirmwareList(list, "WLS", 8);
    const UpdateList software = readSoftwareList(list);
    const std::chrono::duration<double, std::micro> span = std::chrono::steady_clock::now() - start;
    if (firmware.names.empty()) {
      std::puts("nothing was read");
    }
    times.push_back(span.count());
  }
  std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
  return times[kRounds / 2];
}

}  // namespace

int main() {
  std::puts("characters   microseconds for both readers, median");
  for (const std::size_t size : {4000U, 8000U, 16000U, 32000U}) {
    std::printf("%10zu   %.1f\n", size, medianMicroseconds(longList(size)));
  }
}
