#include "catalogue/web_jobs.h"

#include <algorithm>
#include <iterator>

#include "state/pages.h"
#include "state/tell_failure.h"

namespace firmlane {

namespace {

struct ReleaseNotes {
  bool velarc;
  bool firmware;
  const char* path;
};
constexpr ReleaseNotes kReleaseNotes[] = {
    {true, true, "/Velarc/Firmware/version.html"},
    {true, false, "/newsite/vrc_remote.html"},
    {false, true, "/LWX/firmware/version-firmware.html"},
    {false, false, "/LWX/remote/version-remote.html"},
};

}  // namespace

WebJobs::WebJobs(FormHost& host, Desktop& desktop, const Download& download, RunState& state, std::string server)
    : host_(host), desktop_(desktop), download_(download), state_(state), server_(std::move(server)) {}

void WebJobs::StartDoc(const std::string& document) { desktop_.openDocument(document); }

void WebJobs::openPage(const std::string& path) {
  try {
    StartDoc(server_ + path);
  } catch (const Failure& failure) {
    fail("Error trying to launch browser: ", failure);
  }
}

void WebJobs::LaunchRelNote() {
  const auto* const notes =
      std::find_if(std::begin(kReleaseNotes), std::end(kReleaseNotes), [this](const ReleaseNotes& candidate) {
        return candidate.velarc == (state_.ProductCode == "VC") &&
               candidate.firmware == (state_.WizardPage == classic_page::kFirmwareDownloaded);
      });
  openPage(notes->path);
}

void WebJobs::InstallSoftware() {
  try {
    desktop_.runProgram(download_.DownloadPath);
  } catch (const Failure& failure) {
    fail("Error trying to install Remote software: ", failure);
    return;
  }
  throw ProgramEnded();
}

void WebJobs::fail(const char* context, const Failure& failure) { tellFailure(host_, state_, context, failure); }

}  // namespace firmlane
