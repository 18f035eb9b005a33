#include "web/maker_site.h"

#include <array>
#include <span>

#include "units/firmware.h"

namespace firmlane::sim {

namespace {

constexpr const char* kText = "text/plain";
constexpr const char* kHtml = "text/html";

/// One processor's image in a released system.
struct SetFile {
  ImageKind kind;
  const char* remoteName;
  Version version;
};

struct SystemRow {
  const char* version;
  const char* date;
  const char* note;
  const char* directory;
  std::span<const SetFile> files;  // DSP, Hub, RF (Velarc2: Front), Front
};

struct ProductRow {
  const char* tag;
  const char* unit;       // as display names begin; no "V" and no "-", which belong to the version there
  const char* directory;  // of its systems on the server
  std::span<const SystemRow> systems;
  std::span<const char* const> processors;
  int numbers;  // that a version of it has
  // One more file that is listed and downloaded by hand only; null for none.
  const char* extraName = nullptr;
  const char* extraProcessor = nullptr;
};

template <std::uint8_t kBack>
constexpr std::array<SetFile, 4> kWirelessSet = {{
    {ImageKind::WirelessDsp, "wls.bin", {2, 31 - kBack, 0}},
    {ImageKind::WirelessHub, "hubSL.s19", {2, 12 - kBack, 0}},
    {ImageKind::WirelessRf, "RFSL.s19", {1, 17 - kBack, 0}},
    {ImageKind::WirelessFront, "FNTLCDc.s19", {2, 23 - kBack, 0}},
}};
template <std::uint8_t kBack>
constexpr std::array<SetFile, 3> kVelarc2Set = {{
    {ImageKind::Velarc2Dsp, "vrc2.bin", {5, 0, 4 - kBack}},
    {ImageKind::Velarc2Hub, "vrc2hub.s19", {5, 0, 3 - kBack}},
    {ImageKind::Velarc2Front, "vrc2fnt.s19", {1, 2, 5 - kBack}},
}};

constexpr std::array<SystemRow, 3> kWirelessSystems = {{
    {"3.2", "12 May 2025", "Cleaner squelch at the edge of the range", "system32", kWirelessSet<0>},
    {"3.1", "3 February 2025", "Faster search for free channels", "system31", kWirelessSet<1>},
    {"3.0", "20 October 2024", "First release for QDR receivers", "system30", kWirelessSet<2>},
}};
constexpr std::array<SystemRow, 2> kVelarc2Systems = {{
    {"7.2", "28 April 2025", "Presets keep their names", "v72", kVelarc2Set<0>},
    {"7.1", "9 January 2025", "Quieter output stage", "v71", kVelarc2Set<1>},
}};

constexpr std::array kWirelessProcessors = {"DSP", "Hub", "RF", "Front"};
constexpr std::array kVelarc2Processors = {"DSP", "Hub", "Front"};
constexpr ProductRow kWireless = {"WLS", "LWX", "/LWX/system/", kWirelessSystems, kWirelessProcessors, 2};
constexpr ProductRow kVelarc2 = {"VRC", "Second generation", "/Velarc2/", kVelarc2Systems, kVelarc2Processors,
                                 3,     "vrc1.bin",          "Boot"};

struct OldVelarcRow {
  Version version;
  const char* note;
};
constexpr std::array<OldVelarcRow, 3> kOldVelarc = {
    {{{5, 4, 0}, "steadier gain at low level"}, {{5, 3, 0}, "chain of up to 16 units"}, {{5, 2, 0}, "first with seven bands"}}};

struct SoftwareRow {
  const char* name;
  const char* path;
};
constexpr std::array<SoftwareRow, 2> kWirelessSoftware = {{{"LWX Remote V4.1-for Windows", "/LWX/remote/LWXRemote41.exe"},
                                                           {"LWX Remote V4.0-for Windows", "/LWX/remote/LWXRemote40.exe"}}};
constexpr std::array<SoftwareRow, 2> kVelarcSoftware = {
    {{"Vel-Arc Remote V6.2-for Windows", "/Velarc/remote/VelarcRemote62.exe"},
     {"Vel-Arc Remote V6.1-for Windows", "/Velarc/remote/VelarcRemote61.exe"}}};

struct Document {
  const char* path;
  const char* title;
};
constexpr std::array<Document, 5> kDocuments = {{
    {"/Velarc/Firmware/version.html", "Vel-Arc firmware: release notes"},
    {"/newsite/vrc_remote.html", "Vel-Arc remote control software: release notes"},
    {"/LWX/firmware/version-firmware.html", "LWX firmware: release notes"},
    {"/LWX/remote/version-remote.html", "LWX remote control software: release notes"},
    {"/Mic_FAQ_LWX_index.htm", "LWX receivers: questions and answers"},
}};

// It proves that it ran, and does nothing else.
constexpr const char* kInstaller = "#!/bin/sh\ntouch \"$0.ran\"\n";

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) {
    text += part;
  }
  return text;
}

std::string imageText(ImageKind kind, const Version& version) {
  const Bytes image = imageFile(kind, version, usualImageSize(kind));
  return {image.begin(), image.end()};
}

/// A version as lists show it: that of a Velarc has its last two numbers joined.
std::string shown(const Version& version, int numbers) {
  std::string text = versionText(version, numbers);
  constexpr int kThree = 3;
  return numbers == kThree ? text.erase(text.rfind('.'), 1) : text;
}

std::string systemPath(const ProductRow& product, const SystemRow& system, const SetFile& file) {
  return joined({product.directory, system.directory, "/", file.remoteName});
}

std::string remoteLines(std::span<const SoftwareRow> software, const std::string& server) {
  std::string lines;
  for (const SoftwareRow& row : software) {
    lines += joined({"REMOTE|", row.name, "|", server, row.path, "\r\n"});
  }
  return lines;
}

std::string listHead() { return "#Tolvex update list\r\n"; }

std::string systemLine(const ProductRow& product, const SystemRow& system) {
  std::string line = joined({"SYSTEM|", system.version, "|", system.date, "|", system.note});
  for (const SetFile& file : system.files) {
    line += joined({"|", shown(file.version, product.numbers)});
  }
  return joined({line, "|", system.directory, "\r\n"});
}

std::string systemList(const ProductRow& product, std::span<const SoftwareRow> software, const std::string& server) {
  std::string list = listHead() + product.tag;
  const SystemRow& newest = product.systems.front();
  for (std::size_t i = 0; i < newest.files.size(); ++i) {
    list += joined({"|", product.unit, " ", product.processors[i], " V", shown(newest.files[i].version, product.numbers), "-",
                    newest.date, "|", server, systemPath(product, newest, newest.files[i]), "\r\n"});
  }
  if (product.extraName != nullptr) {
    list += joined({"|", product.unit, " ", product.extraProcessor, " V1.00-", newest.date, "|", server, product.directory,
                    newest.directory, "/", product.extraName, "\r\n"});
  }
  list += remoteLines(software, server);
  for (const SystemRow& system : product.systems) {
    list += systemLine(product, system);
  }
  return list;
}

std::string oldVelarcPath(const Version& version) { return joined({"/Velarc/Firmware/V", shown(version, 3), ".bin"}); }

std::string oldVelarcList(const std::string& server) {
  std::string list = listHead() + "VRC";
  for (const OldVelarcRow& row : kOldVelarc) {
    list += joined({"|Vel-Arc V", shown(row.version, 3), "-", row.note, "|", server, oldVelarcPath(row.version), "\r\n"});
  }
  return list + remoteLines(kVelarcSoftware, server);
}

void addImages(MakerSite& site, const ProductRow& product) {
  for (const SystemRow& system : product.systems) {
    for (const SetFile& file : system.files) {
      site[systemPath(product, system, file)] = {imageText(file.kind, file.version)};
    }
    if (product.extraName != nullptr) {
      site[joined({product.directory, system.directory, "/", product.extraName})] = {
          "boot code that no processor takes from here"};
    }
  }
}

}  // namespace

MakerSite makeMakerSite(const std::string& server) {
  MakerSite site;
  const std::string wireless = systemList(kWireless, kWirelessSoftware, server);
  site["/LWX/updateV4.txt"] = {wireless, kText};
  site["/lwx/updatev4.txt"] = {wireless, kText};
  site["/Velarc2/updatevrc.txt"] = {systemList(kVelarc2, kVelarcSoftware, server), kText};
  site["/Velarc/update.txt"] = {oldVelarcList(server), kText};
  addImages(site, kWireless);
  addImages(site, kVelarc2);
  for (const OldVelarcRow& row : kOldVelarc) {
    site[oldVelarcPath(row.version)] = {imageText(ImageKind::OldVelarc, row.version)};
  }
  for (const auto& software : {kWirelessSoftware, kVelarcSoftware}) {
    for (const SoftwareRow& row : software) {
      site[row.path] = {kInstaller};
    }
  }
  for (const Document& document : kDocuments) {
    site[document.path] = {joined({"<html><title>", document.title, "</title><h1>", document.title, "</h1></html>\n"}), kHtml};
  }
  return site;
}

}  // namespace firmlane::sim
