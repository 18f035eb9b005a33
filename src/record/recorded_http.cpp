#include "record/recorded_http.h"

#include "record/record_text.h"

namespace firmlane {

RecordedHttp::RecordedHttp(HttpClient& client, Recorder& recorder) : client_(client), recorder_(recorder) {
  client_.StateChanged = [this](int state) {
    report(state);
    if (StateChanged) {
      StateChanged(state);
    }
  };
}

void RecordedHttp::begin(const std::string& url) {
  recorder_.requested(url);
  underWay_ = true;
}

void RecordedHttp::tellAnswer() {
  underWay_ = false;
  recorder_.answered(client_.statusCode(), client_.GetHeader("Content-Length"));
}

void RecordedHttp::report(int state) {
  if (fetching_ || !underWay_) {
    return;
  }
  if (state == http_state::kResponseCompleted) {
    tellAnswer();
  } else if (state == http_state::kError) {
    underWay_ = false;
    recorder_.requestFailed(Failure(client_.errorNumber(), client_.errorDescription()));
  }
}

std::string RecordedHttp::OpenURL(const std::string& url) {
  begin(url);
  fetching_ = true;
  try {
    std::string body = client_.OpenURL(url);
    fetching_ = false;
    if (body.empty() && client_.errorNumber() != 0) {
      // Nothing answered, and the program gets an empty page.
      recorder_.requestFailed(Failure(client_.errorNumber(), client_.errorDescription()));
    }
    tellAnswer();
    recorder_.bodyTaken(bytesOf(body));
    recorder_.bodyTaken({});
    return body;
  } catch (const Failure& failure) {
    fetching_ = false;
    underWay_ = false;
    recorder_.requestFailed(failure);
    throw;
  }
}

void RecordedHttp::Execute(const std::string& url) {
  begin(url);
  client_.Execute(url);
}

void RecordedHttp::Cancel() {
  // Of a blocking fetch the fetch itself tells.
  if (underWay_ && !fetching_) {
    underWay_ = false;
    recorder_.requestDropped();
  }
  client_.Cancel();
}

Bytes RecordedHttp::GetChunk(std::size_t size) {
  Bytes bytes = client_.GetChunk(size);
  recorder_.bodyTaken(bytes);
  return bytes;
}

}  // namespace firmlane
