#include "releases.h"

namespace firmlane::test {

namespace {

using sim::ImageKind;
using sim::Version;

/// Big enough for some progress, small enough for hundreds of runs.
constexpr std::size_t kImageSize = 400;

struct FileKind {
  ImageKind image;
  Version Release::*version;
  const char* urlName;
};

const std::vector<FileKind>& fileKinds(Line line) {
  static const std::vector<FileKind> wireless = {{ImageKind::WirelessDsp, &Release::dsp, "wls.bin"},
                                                 {ImageKind::WirelessHub, &Release::hub, "hubSL.s19"},
                                                 {ImageKind::WirelessRf, &Release::rf, "RFSL.s19"},
                                                 {ImageKind::WirelessFront, &Release::front, "FNTLCDc.s19"}};
  static const std::vector<FileKind> velarc2 = {{ImageKind::Velarc2Dsp, &Release::dsp, "vrc2.bin"},
                                                {ImageKind::Velarc2Hub, &Release::hub, "vrc2hub.s19"},
                                                {ImageKind::Velarc2Front, &Release::rf, "vrc2fnt.s19"}};
  return line == Line::Wireless ? wireless : velarc2;
}

/// "2.31", or "5.02" for the three digits of a Velarc2.
std::string versionText(Line line, const Version& version) {
  const std::string text = sim::versionText(version, 2);
  return line == Line::Wireless ? text : text + std::to_string(version.third);
}

std::vector<std::string> fields(Line line, const Release& release) {
  std::vector<std::string> values = {release.system,
                                     "12 May 2026",
                                     "System " + release.system,
                                     versionText(line, release.dsp),
                                     versionText(line, release.hub),
                                     versionText(line, release.rf)};
  if (line == Line::Wireless) {
    values.push_back(versionText(line, release.front));
  }
  values.push_back("S" + release.system);
  return values;
}

std::string padded(const std::string& text, std::size_t size) { return text + std::string(size - text.size(), ' '); }

}  // namespace

const std::vector<Release>& releases(Line line) {
  static const std::vector<Release> wireless = {{"3.2", {2, 31, 0}, {2, 40, 0}, {1, 50, 0}, {2, 60, 0}},
                                                {"3.1", {2, 30, 0}, {2, 10, 0}, {1, 20, 0}, {2, 30, 0}},
                                                {"3.0", {2, 29, 0}, {2, 10, 0}, {1, 14, 0}, {2, 21, 0}}};
  static const std::vector<Release> velarc2 = {{"7.2", {5, 0, 4}, {5, 0, 3}, {1, 3, 0}, {}},
                                               {"7.1", {5, 0, 3}, {5, 0, 1}, {1, 2, 3}, {}},
                                               {"7.0", {5, 0, 2}, {5, 0, 1}, {1, 2, 3}, {}}};
  return line == Line::Wireless ? wireless : velarc2;
}

std::vector<SetFile> setFiles(Line line, const Release& release) {
  const std::string folder = std::string(kServer) + (line == Line::Wireless ? "/LWX/system/S" : "/Velarc2/S") + release.system;
  std::vector<SetFile> files;
  for (const FileKind& kind : fileKinds(line)) {
    files.push_back({sim::imageFileName(kind.image), folder + "/" + kind.urlName,
                     sim::imageFile(kind.image, release.*kind.version, kImageSize)});
  }
  return files;
}

std::string updateListUrl(Line line) {
  return std::string(kServer) + (line == Line::Wireless ? "/LWX/updateV4.txt" : "/Velarc2/updatevrc.txt");
}

std::string updateList(Line line) {
  const Release& newest = releases(line).front();
  const std::string tag = line == Line::Wireless ? "WLS" : "VRC";
  std::string text = "#Updates\r\n";
  const std::pair<const char*, const Version&> entries[] = {
      {"DSP", newest.dsp}, {"Hub", newest.hub}, {"RF", newest.rf}, {"Front", newest.front}};
  for (const auto& [name, version] : entries) {
    text += tag + "|" + name + " V" + versionText(line, version) + "-2026|/there\r\n";
  }
  text += "REMOTE|Remote V5.0-2026|/there\r\n";
  for (const Release& release : releases(line)) {
    text += "SYSTEM";
    for (const std::string& field : fields(line, release)) {
      text += "|" + field;
    }
    text += "\r\n";
  }
  return text;
}

void serve(ScriptedHttp& http, Line line) {
  http.answer(updateListUrl(line), updateList(line));
  for (const Release& release : releases(line)) {
    for (const SetFile& file : setFiles(line, release)) {
      http.answer(file.url, std::string(file.content.begin(), file.content.end()));
    }
  }
}

void putOnDisk(const TemporaryDirectory& directory, Line line, const Release& release) {
  for (const SetFile& file : setFiles(line, release)) {
    directory.write(file.name, file.content);
  }
  const std::vector<std::string> values = fields(line, release);
  std::string record = padded(values[0], 10) + padded(values[1], 20) + padded(values[2], 100);
  for (std::size_t i = 3; i < 6; ++i) {
    record += padded(values[i], 10);
  }
  record += padded(line == Line::Wireless ? values[6] : "", 10) + padded(values.back(), 20);
  directory.write(line == Line::Wireless ? "LWXSys.lwx" : "VRC2Sys.vrc", record);
}

}  // namespace firmlane::test
