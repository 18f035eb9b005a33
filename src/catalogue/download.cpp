#include "catalogue/download.h"

#include <algorithm>
#include <limits>

#include "platform/partial_file.h"
#include "state/tell_failure.h"
#include "state/text.h"

namespace firmlane {

namespace {
constexpr std::size_t kChunk = 512;
}  // namespace

Download::Download(FormHost& host, HttpClient& http, const Files& files, FirmwareSet& set, const ListFetch& lists,
                   Supervision& supervision, WizardInCharge& wizard, RunState& state, Form1& form1, std::string server)
    : host_(host),
      http_(http),
      files_(files),
      set_(set),
      lists_(lists),
      supervision_(supervision),
      wizard_(wizard),
      state_(state),
      form1_(form1),
      server_(std::move(server)) {
  http_.StateChanged = [this](int State) { Inet1_StateChanged(State); };
}

Download::~Download() { http_.StateChanged = nullptr; }

void Download::GetFirmware2() {
  try {
    reset();
    const std::size_t line = selectedLine();
    transfer(firmwareSource(state_, static_cast<int>(line), lists_.FirmwareUrls[line], server_));
    form1_.lblTop.Caption = "Finished downloading firmware!\r\rClick on Next to Continue";
  } catch (const Failure& failure) {
    fail(failure);
  }
}

void Download::GetSoftware() {
  try {
    reset();
    const DownloadSource source = softwareSource(lists_.SoftwareUrls[selectedLine()]);
    form1_.Command3.Disable();
    transfer(source);
    form1_.lblTop.Caption = "Finished downloading software!\r\rClick on Next to Continue";
  } catch (const Failure& failure) {
    fail(failure);
  }
  form1_.Command3.Enable();
}

void Download::reset() {
  DownloadDone = false;
  ContentLength = 0;
  broken_.reset();
  supervision_.BarValue = 0;
  wizard_.setBar(0);
}

std::size_t Download::selectedLine() const {
  const int line = form1_.List1.ListIndex;
  if (line < 0 || line >= static_cast<int>(kMostEntries)) {
    throw Failure(failure_number::kSubscriptOutOfRange, "The list has no entry number " + std::to_string(line));
  }
  return static_cast<std::size_t>(line);
}

void Download::transfer(const DownloadSource& source) {
  const Activity::Span downloading(supervision_.activity, Doing::Downloading);
  DownloadPath = files_.path(source.name);
  name_ = source.name;
  place_ = set_.place(name_);
  supervision_.SlowBar = true;
  form1_.Timer1.stop();
  form1_.List1.Hide();
  http_.Execute(source.url);
  while (!DownloadDone && !broken_) {
    host_.queue().WaitEvents();
  }
  supervision_.SlowBar = false;
  if (broken_) {
    throw Failure(*broken_);
  }
  form1_.Timer1.stop();
  wizard_.setBar(kFullBar);
  if (const auto words = statusWords(http_, source.url)) {
    wizard_.tellOutcome(OutcomeKind::Caution, *words);
  }
}

void Download::Inet1_StateChanged(int State) {
  if (!supervision_.SlowBar && !Registering) {
    return;
  }
  switch (State) {
    case http_state::kConnecting:
    case http_state::kRequesting:
    case http_state::kRequestSent:
      RegisterState = kRegistrationUnderWay;
      break;
    case http_state::kResponseReceived:
      if (!Registering && ContentLength == 0) {
        takeContentLength();
      }
      break;
    case http_state::kResponseCompleted:
      if (Registering) {
        RegisterState = kRegistrationUnderWay;
      } else {
        takeBody();
      }
      break;
    case http_state::kError:
      if (!Registering) {
        broken_ = Failure(http_.errorNumber(), http_.errorDescription());
      }
      break;
    default:
      break;
  }
}

void Download::takeContentLength() {
  const std::int64_t length = http_.statedLength().value_or(0);
  if (length <= std::numeric_limits<std::int32_t>::max()) {
    ContentLength = static_cast<std::int32_t>(length);
  }
}

void Download::takeBody() {
  form1_.lblProgressInfo.Show();
  try {
    PartialFile file(files_.disk(), place_);
    std::size_t received = 0;
    Bytes chunk;
    do {
      // A pass that does not rest: an image of some megabytes has thousands of chunks.
      host_.queue().waitEventsUntil(host_.queue().now());
      chunk = http_.GetChunk(kChunk);
      received += chunk.size();
      showProgress(static_cast<std::int64_t>(received));
      file.write(chunk);
    } while (!chunk.empty());
    throwIfShort(http_, received);
    set_.breakUp(name_);
    file.complete();
    DownloadDone = true;
    supervision_.SlowBar = false;
  } catch (const Failure& failure) {
    broken_ = failure;
  }
}

void Download::showProgress(std::int64_t received) {
  supervision_.activity.progress(received, ContentLength);
  if (ContentLength <= 0) {
    return;
  }
  const std::int64_t percent = received > 0 ? std::min<std::int64_t>(received * kFullBar / ContentLength + 1, kFullBar) : 0;
  form1_.lblProgressInfo.Caption = "Downloaded " + std::to_string(received) + " bytes (" + std::to_string(percent) + "%)";
  wizard_.setBar(static_cast<int>(percent));
}

void Download::fail(const Failure& failure) {
  form1_.Timer1.stop();
  tellFailure(host_, state_, "Error trying download firmware: ", failure);
  wizard_.tellOutcome(OutcomeKind::Failure, state_.ErrorText);
}

}  // namespace firmlane
