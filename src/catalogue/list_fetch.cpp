#include "catalogue/list_fetch.h"

#include "catalogue/download_source.h"
#include "state/pages.h"
#include "state/tell_failure.h"

namespace firmlane {

namespace {

constexpr char kListMark = '#';  // an error page begins with something else

constexpr const char* kNoConnection =
    "Firmlane was unable to make a connection.\r\rMake sure that you are connected to the internet and try again.";
constexpr const char* kNoList = "The Firmlane was unable to find a list of currently available software on Tolvex's website.";
constexpr const char* kLater = " Please try again later.\r\rClick on Next to continue";
constexpr const char* kReceived = "The Firmlane has received a list of currently available software\r\rClick on Next to continue";

}  // namespace

ListFetch::ListFetch(FormHost& host, HttpClient& http, const Files& files, WizardInCharge& wizard, Activity& activity,
                     RunState& state, Form1& form1, std::string server)
    : host_(host),
      http_(http),
      files_(files),
      wizard_(wizard),
      activity_(activity),
      state_(state),
      form1_(form1),
      server_(std::move(server)) {}

void ListFetch::GetUpdateText() {
  const FirmwareListSource& source = firmwareListFor(state_);
  try {
    if (fetch(source.path, source.localCopy, true)) {
      ParseFile(source);
      if (!state_.CatalogueReady) {
        tellWizard(kNoList);  // it waits on for a list with entries, and its user is to know
        wizard_.tellOutcome(OutcomeKind::Failure, kNoList);
      }
    }
  } catch (const Failure& failure) {
    fail(failure);
  }
}

void ListFetch::GetUpdateSOFT() {
  const SoftwareListSource& source = softwareListFor(state_);
  try {
    if (fetch(source.path, source.localCopy, false)) {
      ParseFileSOFT();
    }
  } catch (const Failure& failure) {
    fail(failure);
  }
}

void ListFetch::clearUrls() {
  FirmwareUrls.fill({});
  SoftwareUrls.fill({});
}

void ListFetch::abandon() {
  if (underWay()) {
    fetching_.leave();
    form1_.Timer1.stop();
    http_.Cancel();
  }
}

/// The body of the list; nothing when the fetch was given up meanwhile.
std::optional<std::string> ListFetch::bodyOf(const std::string& url) {
  const LeavableWait::Stay fetching(fetching_);
  try {
    std::string body = http_.OpenURL(url);
    return fetching.left() ? std::nullopt : std::optional(std::move(body));
  } catch (const Failure&) {
    if (fetching.left()) {
      return std::nullopt;
    }
    throw;
  }
}

bool ListFetch::fetch(const char* path, const char* localCopy, bool toWizard) {
  const Activity::Span fetching(activity_, Doing::FetchingList);
  std::optional<std::string> body = bodyOf(server_ + path);
  if (!body) {
    return false;
  }
  UpdateText = std::move(*body);
  if (UpdateText.size() < kTextCut) {
    throwIfShort(http_, UpdateText.size());
  }
  const auto status = UpdateText.empty() ? std::nullopt : statusWords(http_, path);
  if (status) {
    wizard_.tellOutcome(OutcomeKind::Caution, *status);
  }
  if (UpdateText.empty()) {
    tellNoConnection(toWizard);
    return false;
  }
  if (UpdateText.front() != kListMark) {
    tellNoList(toWizard);
    if (!status) {
      wizard_.tellOutcome(OutcomeKind::Failure, kNoList);
    }
    return false;
  }
  files_.replaceText(files_.path(localCopy), "\"" + UpdateText + "\"\r\n");
  tellReceived();
  return true;
}

void ListFetch::tellNoConnection(bool toWizard) {
  showStatus(kNoConnection);
  wizard_.tellOutcome(OutcomeKind::Failure, kNoConnection);
  endOnFailedPage();
  form1_.lblTop.Show();
  form1_.lblTop.Caption = "Error connecting to the Internet";
  if (AutoForm* wizard = wizard_.form(); wizard != nullptr && toWizard) {
    wizard->lblMain.Caption = kNoConnection;
    state_.AutoPage = auto_page::kVerdict;
    wizard->btnNext.Enable();
  }
}

void ListFetch::tellNoList(bool toWizard) {
  wizard_.setBar(kFullBar);
  form1_.lblConnect.Hide();
  showStatus(std::string(kNoList) + kLater);
  endOnFailedPage();
  if (toWizard) {
    tellWizard(kNoList);
  }
}

void ListFetch::tellWizard(const char* text) {
  if (AutoForm* wizard = wizard_.form()) {
    wizard->lblMain.Caption = text;
  }
}

void ListFetch::tellReceived() {
  form1_.Timer1.stop();
  wizard_.setBar(kFullBar);
  form1_.lblConnect.Hide();
  showStatus(kReceived);
}

void ListFetch::showStatus(const std::string& text) {
  form1_.lblStatus.Caption = text;
  form1_.lblStatus.Show();
}

void ListFetch::endOnFailedPage() {
  form1_.Timer1.stop();
  state_.WizardPage = classic_page::kFetchFailed;
  form1_.ProgressBar1.Hide();
}

void ListFetch::ParseFile(const FirmwareListSource& source) {
  const UpdateList list = readFirmwareList(UpdateText, source.entryTag, source.systemFields.size());
  takeEntries(list, FirmwareUrls);
  for (std::size_t i = 0; i < list.systems.size(); ++i) {
    SystemRecord& record = (state_.*source.systems)[i];
    for (std::size_t field = 0; field < list.systems[i].size(); ++field) {
      source.systemFields[field](record, list.systems[i][field]);
    }
  }
  state_.SystemCount = list.lastSystem.value_or(state_.SystemCount);
  if (list.failure) {
    throw Failure(*list.failure);
  }
  state_.CatalogueReady = !list.locations.empty();
}

void ListFetch::ParseFileSOFT() {
  const UpdateList list = readSoftwareList(UpdateText);
  takeEntries(list, SoftwareUrls);
  if (list.failure) {
    throw Failure(*list.failure);
  }
  state_.CatalogueReady = !list.locations.empty();
}

void ListFetch::takeEntries(const UpdateList& list, std::array<std::string, kMostEntries>& urls) {
  for (const std::string_view name : list.names) {
    form1_.List1.AddItem(std::string(name));
  }
  for (std::size_t n = 0; n < list.locations.size(); ++n) {
    urls[n] = list.locations[n];
  }
}

void ListFetch::fail(const Failure& failure) {
  form1_.Timer1.stop();
  tellFailure(host_, state_, "Error trying to connect: ", failure);
  wizard_.tellOutcome(OutcomeKind::Failure, state_.ErrorText);
}

}  // namespace firmlane
