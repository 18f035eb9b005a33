#include "catalogue/download_source.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <span>

#include "catalogue/update_list.h"
#include "state/file_names.h"
#include "state/text.h"

namespace firmlane {

namespace {

struct FirmwareFile {
  std::string_view product;
  int line;
  std::string_view directory;  // on the server, the system's own directory below it
  std::string_view remoteName;
  std::string_view localName;
};
constexpr FirmwareFile kFirmwareSet[] = {
    {"WS", 0, "/LWX/system/", file_name::kWirelessDsp, file_name::kWirelessDsp},
    {"WS", 1, "/LWX/system/", "hubSL.s19", file_name::kWirelessHub},
    {"WS", 2, "/LWX/system/", file_name::kWirelessRf, file_name::kWirelessRf},
    {"WS", 3, "/LWX/system/", file_name::kWirelessFront, file_name::kWirelessFront},
    {"VC", 0, "/Velarc2/", file_name::kVelarc2Dsp, file_name::kVelarc2Dsp},
    {"VC", 1, "/Velarc2/", file_name::kVelarc2Hub, file_name::kVelarc2Hub},
    {"VC", 2, "/Velarc2/", file_name::kVelarc2Front, file_name::kVelarc2Front},
    {"VC", 3, "/Velarc2/", file_name::kVelarc2Fourth, file_name::kVelarc2Fourth},
};

constexpr int kSlashesBeforeName = 5;
constexpr std::string_view kInstallerEnding = ".exe";

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

/// `text` comes from the list and may be of any length.
Failure badName(const std::string& why, const std::string& text) {
  constexpr std::size_t kShown = 120;
  return {failure_number::kPathAccess, why + ": " + (text.size() > kShown ? text.substr(0, kShown) + "..." : text)};
}

/// A line of the list ends in CR LF, and the CR stays with the location.
std::string urlOf(std::string location) {
  while (location.ends_with(kCr)) {
    location.pop_back();
  }
  return location;
}

/// What stands between the fifth "/" and the next `ending`.
std::string nameIn(const std::string& url, std::string_view ending) {
  std::size_t start = 0;
  for (int slashes = 0; slashes < kSlashesBeforeName; ++slashes) {
    start = url.find('/', start);
    if (start++ == std::string::npos) {
      throw badName("The list names no file to download", url);
    }
  }
  const std::size_t end = url.find(ending, start);
  if (end == std::string::npos || end == start) {
    throw badName("The list names no file to download", url);
  }
  return url.substr(start, end - start);
}

/// Windows takes these for devices, whatever ending they have.
bool isDevice(const std::string& name) {
  const std::string stem = lower(name.substr(0, name.find('.')));
  constexpr std::array<std::string_view, 4> kDevices = {"con", "prn", "aux", "nul"};
  constexpr std::size_t kNumbered = 4;  // COM1, LPT1
  return std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end() ||
         (stem.size() == kNumbered && (stem.starts_with("com") || stem.starts_with("lpt")) && stem.back() >= '0' &&
          stem.back() <= '9');
}

bool isPlain(const std::string& name) {
  constexpr std::string_view kForbidden = R"(/\:*?"<>|)";
  const bool clean = std::all_of(name.begin(), name.end(), [&](unsigned char c) {
    return c >= ' ' && c != 0x7F && kForbidden.find(static_cast<char>(c)) == std::string_view::npos;
  });
  return clean && !name.empty() && name.front() != '.' && name.find("..") == std::string::npos && !isDevice(name);
}

/// Whether it is one of the program's own names, in whatever letters.
bool isOwn(const std::string& name, std::span<const char* const> own) {
  return std::any_of(own.begin(), own.end(), [&name](const char* candidate) { return lower(candidate) == lower(name); });
}

std::string checkedName(const std::string& name) {
  if (!isPlain(name)) {
    throw badName("Not a name for a file in the program's directory", name);
  }
  if (isOwn(name, file_name::kSetFiles) || isOwn(name, file_name::kOtherOwn)) {
    throw badName("The program uses a file of that name itself", name);
  }
  return name;
}

/// The directory of the chosen system on the server.
std::string systemDirectory(const RunState& state) {
  const auto& systems = state.ProductCode == "VC" ? state.VrcSystems : state.LwxSystems;
  const int chosen = state.SelectedSystem;
  if (chosen < 0 || chosen >= static_cast<int>(systems.size())) {
    throw Failure(failure_number::kSubscriptOutOfRange, "There is no system number " + std::to_string(chosen));
  }
  return systems[static_cast<std::size_t>(chosen)].SystemDir.trimmed();
}

}  // namespace

DownloadSource firmwareSource(const RunState& state, int line, const std::string& location, const std::string& server) {
  if (state.ProductCode == "VC" && state.OldVelarc) {
    return {urlOf(location), file_name::kOldVelarc};
  }
  const auto* const file = std::find_if(std::begin(kFirmwareSet), std::end(kFirmwareSet), [&](const FirmwareFile& known) {
    return known.product == state.ProductCode && known.line == line;
  });
  if (file != std::end(kFirmwareSet)) {
    std::string url = server;
    url.append(file->directory).append(systemDirectory(state)).append("/").append(file->remoteName);
    return {url, std::string(file->localName)};
  }
  const std::string url = urlOf(location);
  return {url, checkedName(nameIn(url, "."))};
}

std::optional<std::string> statusWords(const HttpClient& http, const std::string& url) {
  if (http.succeeded()) {
    return std::nullopt;
  }
  const std::string reason = http.statusText().empty() ? "" : " " + http.statusText();
  return "The server answered " + std::to_string(http.statusCode()) + reason + " for " + url.substr(url.rfind('/') + 1);
}

void throwIfShort(const HttpClient& http, std::size_t received) {
  const auto stated = http.statedLength();
  if (stated && static_cast<std::int64_t>(received) < *stated) {
    throw Failure(failure_number::kInputPastEnd,
                  "The server sent only " + std::to_string(received) + " of " + std::to_string(*stated) + " bytes");
  }
}

DownloadSource softwareSource(const std::string& location) {
  const std::string url = urlOf(location);
  return {url, checkedName(nameIn(url, kInstallerEnding).append(kInstallerEnding))};
}

}  // namespace firmlane
