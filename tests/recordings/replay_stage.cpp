#include "replay_stage.h"

#include <algorithm>

#include "record/record_text.h"
#include "web/record_files.h"

namespace firmlane::test {

using sim::Entry;

namespace {
struct Played {};

constexpr Micros kLongestRun = Micros{4} * 3600 * kSecond;
}  // namespace

void PacedTime::sleep(Micros until) {
  constexpr Micros kRest = 20;
  time_.sleep(until - time_.now() == kRest ? time_.now() + pass_ : until);
}

void ReplayDriver::open(int number, const LineSettings& /*settings*/) {
  if (const auto refusal = replay_.refusalOf(number)) {
    throw Failure(*refusal);
  }
  port_ = number;
}

void ReplayDriver::send(ByteSpan bytes) { replay_.hear(port_, bytes); }

void ReplayDriver::vanish(const Failure& failure) {
  port_ = 0;
  lost(failure);
}

void ReplayHttp::answer(const Entry& got, const Bytes& body) {
  if (!underWay_) {
    return;
  }
  underWay_ = false;
  status_ = std::stoi(got.words[0]);
  statedLength_ = got.words.back() == "none" ? "" : got.words.back();
  body_ = body;
  for (const int state : {http_state::kConnecting, http_state::kRequesting, http_state::kRequestSent,
                          http_state::kResponseReceived, http_state::kResponseCompleted}) {
    raise(state);
  }
}

void ReplayHttp::fail(const Failure& failure, bool offline) {
  if (underWay_) {
    underWay_ = false;
    offline_ = offline;
    error_ = failure;
    raise(http_state::kError);
  }
}

void ReplayHttp::raise(int state) {
  queue_.post([this, state, mine = request_] {
    if (mine == request_ && StateChanged) {
      StateChanged(state);
    }
  });
}

std::string ReplayHttp::OpenURL(const std::string& url) {
  Execute(url);
  const int mine = request_;
  while (underWay_ && mine == request_) {
    queue_.WaitEvents();
  }
  if (mine != request_) {
    throw Failure(1, "The request was given up");
  }
  queue_.PumpEvents();
  if (error_ && !offline_) {
    throw Failure(*error_);
  }
  return {body_.begin(), body_.end()};
}

void ReplayHttp::Execute(const std::string& /*url*/) {
  ++request_;
  underWay_ = true;
  offline_ = false;
  status_ = 0;
  statedLength_.clear();
  body_.clear();
  read_ = 0;
  error_.reset();
}

void ReplayHttp::Cancel() {
  ++request_;
  underWay_ = false;
}

std::string ReplayHttp::GetHeader(const std::string& name) const { return name == "Content-Length" ? statedLength_ : ""; }

Bytes ReplayHttp::GetChunk(std::size_t size) {
  const ByteSpan chunk = ByteSpan(body_).subspan(read_, std::min(size, body_.size() - read_));
  read_ += chunk.size();
  return {chunk.begin(), chunk.end()};
}

VirtualReplay::VirtualReplay(const sim::Recording& recording, const sim::Shelf& shelf, Micros pass)
    : recording_(recording),
      shelf_(shelf),
      paced_(time_, pass),
      before_(std::filesystem::current_path()),
      replay_(recording, *this, sim::ReplayPart::Everything) {
  std::filesystem::current_path(directory_.path());
  sim::putFiles(recording, shelf, directory_.path().string());
  record_.follow([this](const std::string& line) { observe(line.substr(line.find(' ') + 1)); });
  replay_.onOver = [this] {
    reached_ = replay_.next() == nullptr ? recording_.entries.size() : replay_.next()->line;
    time_.after(0, [] { throw Played(); });
  };
  const auto has = [&recording](const char* name) { return recording.headOf("switches").find(name) != std::string::npos; };
  program_ = std::make_unique<Program>(
      Platform{.queue = queue_,
               .screen = screen_,
               .mainDriver = mainDriver_,
               .versionDriver = versionDriver_,
               .http = http_,
               .desktop = desktop_,
               .files = files_,
               .servers = {recording.headOf("server"), recording.headOf("registration")},
               .recorder = record_},
      BuildSwitches{.factoryBuild = has("factory"), .inHouseBuild = has("in-house"), .debugView = has("debug")});
  details_.emplace(record_, *program_, Servers{}, BuildSwitches{}, Surroundings{});
}

VirtualReplay::~VirtualReplay() {
  record_.follow(nullptr);
  details_.reset();
  program_.reset();
  std::filesystem::current_path(before_);
}

/// The program's directory is another one now, and stands in the words of some pages.
void VirtualReplay::observe(const std::string& entry) {
  replay_.observe(recording_.asInItsDirectory(entry, files_.programDirectory()));
}

std::string VirtualReplay::play() {
  time_.setEnd(kLongestRun);
  try {
    replay_.start();
    program_->start();
    program_->run();
    replay_.end("the program has ended");
  } catch (const Played&) {
    return replay_.difference();
  } catch (const NothingCanHappen&) {
    replay_.end("the program waits for something that can never come");
  }
  return replay_.difference();
}

std::optional<std::string> VirtualReplay::perform(const Entry& entry) {
  if (entry.kind == "heard" || entry.kind == "lost") {
    ReplayDriver& driver = mainDriver_.port() == entry.port() ? mainDriver_ : versionDriver_;
    if (driver.port() != entry.port()) {
      return "the port is not open now";
    }
    if (entry.kind == "lost") {
      driver.vanish(Failure(entry.failureNumber(), entry.failureText()));
      return std::nullopt;
    }
    if (!entry.bytes.inFull) {
      return "the record does not hold these bytes in full";
    }
    driver.received(entry.bytes.first);
    return std::nullopt;
  }
  if (entry.kind == "failed") {
    const Entry* behind = replay_.next();
    http_.fail(Failure(entry.failureNumber(), entry.failureText()),
               behind != nullptr && behind->kind == "got" && behind->words.front() == "0");
    return std::nullopt;
  }
  return entry.kind == "got" ? answer(entry) : act(entry);
}

std::optional<std::string> VirtualReplay::answer(const Entry& got) {
  const Entry* body = replay_.bodyBehind(got);
  const Bytes* content = body == nullptr ? nullptr : shelf_.find(body->bytes);
  if (body != nullptr && content == nullptr) {
    return "the record does not hold the body in full, and nothing on the shelf has its sum";
  }
  http_.answer(got, content == nullptr ? Bytes() : *content);
  return std::nullopt;
}

std::optional<std::string> VirtualReplay::act(const Entry& entry) {
  FormHost& host = program_->host();
  const std::string& name = entry.words.front();
  if (entry.kind == "answer") {
    const std::pair<const char*, MessageButton> buttons[] = {
        {"OK", MessageButton::OK}, {"Cancel", MessageButton::Cancel}, {"Yes", MessageButton::Yes}, {"No", MessageButton::No}};
    for (const auto& [button, value] : buttons) {
      if (name == button) {
        return host.answer(value);
      }
    }
    return "no such button";
  }
  const std::string formName = name.substr(0, name.find('.'));
  Form* form = host.form(formName);
  if (form == nullptr) {
    return "no such form";
  }
  if (entry.kind == "close") {
    return host.close(*form);
  }
  Control* control = form->control(name.substr(std::min(name.size(), formName.size() + 1)));
  if (control == nullptr) {
    return "no such control";
  }
  if (entry.kind == "choose") {
    return host.choose(*control, std::stoi(entry.words[1]));
  }
  if (entry.kind == "type") {
    return host.type(*control, entry.words[1] == kNotKept ? "x" : entry.words[1]);
  }
  return host.click(*control);
}

}  // namespace firmlane::test
