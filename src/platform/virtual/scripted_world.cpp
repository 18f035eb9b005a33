#include "platform/virtual/scripted_world.h"

#include <algorithm>
#include <cctype>

namespace firmlane {

namespace {
constexpr Micros kSilenceLimit = 60 * kSecond;

Failure timeout() { return {12002, "The request has timed out"}; }

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}
}  // namespace

void ScriptedHttp::answer(const std::string& url, const std::string& body, bool withLength) {
  ScriptedAnswer answer{.body = body, .headers = {}, .failure = {}};
  if (withLength) {
    answer.headers["content-length"] = std::to_string(body.size());
  }
  answers_[url] = std::move(answer);
}

void ScriptedHttp::begin(const std::string& url) {
  requests_.push_back(url);
  const auto found = answers_.find(url);
  current_ = found != answers_.end() ? found->second : ScriptedAnswer{.failure = Failure(12029, "Cannot connect to the server")};
  read_ = 0;
  error_.reset();
  over_ = false;
  ++generation_;
  raise(http_state::kConnecting);
  const auto arrive = [this, generation = generation_] {
    if (generation != generation_) {
      return;
    }
    over_ = true;
    if (current_.failure) {
      error_ = current_.failure;
      raise(http_state::kError);
      return;
    }
    raise(http_state::kRequesting);
    raise(http_state::kRequestSent);
    raise(http_state::kResponseReceived);
    raise(http_state::kResponseCompleted);
  };
  const bool silent = current_.delay == kForever;
  if (silent) {
    current_.failure = timeout();
  }
  time_.after(silent ? kSilenceLimit : current_.delay, arrive);
}

void ScriptedHttp::raise(int state) {
  queue_.post([this, state, generation = generation_] {
    if (generation == generation_ && StateChanged) {
      StateChanged(state);
    }
  });
}

std::string ScriptedHttp::OpenURL(const std::string& url) {
  begin(url);
  const int mine = generation_;
  const Micros limit = queue_.now() + kSilenceLimit;
  while (!over_ && mine == generation_ && queue_.now() < limit) {
    queue_.waitEventsUntil(limit);
  }
  if (mine != generation_) {
    throw Failure(12017, "The request was given up");
  }
  if (!over_) {
    Cancel();
    throw timeout();
  }
  queue_.PumpEvents();
  if (error_) {
    throw Failure(*error_);
  }
  return current_.body.substr(0, kTextCut);
}

void ScriptedHttp::Execute(const std::string& url) { begin(url); }

std::string ScriptedHttp::GetHeader(const std::string& name) const {
  const auto found = current_.headers.find(lower(name));
  return found == current_.headers.end() ? "" : found->second;
}

Bytes ScriptedHttp::GetChunk(std::size_t size) {
  const std::size_t count = std::min(size, current_.body.size() - read_);
  const auto* data = reinterpret_cast<const std::uint8_t*>(current_.body.data()) + read_;
  read_ += count;
  return {data, data + count};
}

void RecordingDesktop::openDocument(const std::string& document) {
  if (failure) {
    throw Failure(*failure);
  }
  documents.push_back(document);
}

void RecordingDesktop::runProgram(const std::string& path) {
  if (failure) {
    throw Failure(*failure);
  }
  programs.push_back(path);
}

}  // namespace firmlane
