// Brings an update list from the maker's web server, keeps a copy of it beside the program, and puts what it names into List1,
// the tables of URLs and the records of released systems. What the text means is update_list's business.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "catalogue/list_sources.h"
#include "platform/files.h"
#include "platform/http_client.h"
#include "progress/activity.h"
#include "progress/leavable_wait.h"
#include "progress/wizard_in_charge.h"

namespace firmlane {

class ListFetch {
 public:
  /// `server` is scheme and host of the maker's web server.
  ListFetch(FormHost& host, HttpClient& http, const Files& files, WizardInCharge& wizard, Activity& activity, RunState& state,
            Form1& form1, std::string server);

  /// Fetches the list of the product in use and reads its firmware, and its systems where it has any. Passes events meanwhile and
  /// ends after 60 s at the latest. The caller has cleared List1 and the URLs and started Timer1. Tells every failure itself;
  /// without a list WizardPage is 50, and an auto wizard in charge gets the text too. CatalogueReady tells whether entries came.
  void GetUpdateText();
  /// The same for the remote-control software.
  void GetUpdateSOFT();

  /// One of the two is under way, and nobody has given it up.
  [[nodiscard]] bool underWay() const { return fetching_.underWay(); }
  /// Gives up the fetch under way, if any: nothing of it is told, kept or shown any more.
  void abandon();

  /// Empties both tables of URLs.
  void clearUrls();

  /// The body of the list fetched last, unchanged.
  std::string UpdateText;
  /// Where to fetch line n of List1, a CR at the end included.
  std::array<std::string, kMostEntries> FirmwareUrls;
  std::array<std::string, kMostEntries> SoftwareUrls;

 private:
  /// Whether the list has come and is one; what there is to say has been said.
  bool fetch(const char* path, const char* localCopy, bool toWizard);
  std::optional<std::string> bodyOf(const std::string& url);
  void tellNoConnection(bool toWizard);
  void tellNoList(bool toWizard);
  void tellWizard(const char* text);
  void tellReceived();
  void showStatus(const std::string& text);
  void endOnFailedPage();
  void ParseFile(const FirmwareListSource& source);
  void ParseFileSOFT();
  void takeEntries(const UpdateList& list, std::array<std::string, kMostEntries>& urls);
  void fail(const Failure& failure);

  FormHost& host_;
  HttpClient& http_;
  const Files& files_;
  WizardInCharge& wizard_;
  Activity& activity_;
  RunState& state_;
  Form1& form1_;
  std::string server_;
  LeavableWait fetching_;
};

}  // namespace firmlane
