#include "record/record.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/screen.h"
#include "platform/serial_port.h"
#include "record/file_note.h"
#include "record/record_text.h"

namespace firmlane {

namespace {

constexpr std::size_t kSentInFull = 128;
constexpr std::size_t kHeardInFull = 512;
constexpr std::size_t kMostHeardInFull = 4096;  // of a line that never stops: the rest must not push out what was before it
constexpr std::size_t kBodyInFull = 8192;
constexpr std::size_t kLongestHex = 256;
constexpr Micros kPauseSending = 250 * kMillisecond;
constexpr Micros kPauseHearing = 10 * kMillisecond;

constexpr std::array<std::string_view, 3> kContactFields = {"txtEmail", "txtFirst", "txtLast"};
// They count by the clock or by the byte; how far things are stands in the record anyway.
constexpr std::array<std::string_view, 1> kCounting = {"lblProgressInfo"};

constexpr std::array kHandshakes = {"none", "xonxoff", "rts"};
constexpr std::array kIcons = {"none", "critical", "exclamation", "question", "information"};
constexpr std::array kButtons = {"OK", "Cancel", "Yes", "No"};

template <typename Names, typename Value>
std::string nameOf(const Names& names, Value value) {
  return names.at(static_cast<std::size_t>(value));
}

template <typename Names>
bool isOneOf(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string text(const LineSettings& settings) {
  return std::to_string(settings.baud) + " " + nameOf(kHandshakes, settings.handshake);
}

std::string text(const Failure& failure) {
  return "#" + std::to_string(failure.number()) + " " + inQuotes(withoutContact(failure.description()));
}

std::string pathOf(const Control& control) { return control.form().name() + "." + control.name(); }

bool isSeen(const Control& control) {
  for (const Control* c = &control; c != nullptr; c = c->frame()) {
    if (!c->Visible) {
      return false;
    }
  }
  return control.form().Visible;
}

/// What a control says to the user, as the record writes it; empty for nothing.
std::string wordsOf(const Control& control) {
  if (!isSeen(control)) {
    return {};
  }
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) {
    std::string lines;
    for (const std::string& line : list->Lines.get()) {
      lines += " " + inQuotes(line);
    }
    return lines.empty() ? lines : "lists " + pathOf(control) + lines;
  }
  const auto* label = dynamic_cast<const Label*>(&control);
  if (label == nullptr || label->Caption.get().empty()) {
    return {};
  }
  const auto* outcome = dynamic_cast<const OutcomeLabel*>(label);
  const std::string kind = outcome == nullptr || outcome->Kind.get().empty() ? std::string() : outcome->Kind.get() + " ";
  return "says " + pathOf(control) + " " + kind + inQuotes(withoutContact(label->Caption));
}

bool isText(const Bytes& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) {
    return (byte >= 0x20 && byte < 0x7F) || byte == '\r' || byte == '\n' || byte == '\t';
  });
}

}  // namespace

std::string Record::text(const std::string& head) {
  closeTraffic();
  std::string dropped;
  if (ring_.dropped() > 0) {
    dropped = "missing: " + std::to_string(ring_.dropped()) + " older entries\n";
  }
  return std::string(kTitle) + "\n" + head + dropped + ring_.text() + kEnd + "\n";
}

void Record::addAt(Micros time, const std::string& entry) {
  closeTraffic();
  const std::string line = secondsText(time) + " " + clean(entry);
  ring_.add(line);
  if (follower_) {
    follower_(line);
  }
}

void Record::portOpened(int port, const LineSettings& settings) {
  heardInARow_ = 0;
  add("open " + std::to_string(port) + " " + firmlane::text(settings));
}

void Record::portRefused(int port, const Failure& failure) {
  cause_ = clean(failureText("", failure));
  add("refused " + std::to_string(port) + " " + firmlane::text(failure));
}

void Record::portSet(int port, const LineSettings& settings) {
  add("set " + std::to_string(port) + " " + firmlane::text(settings));
}

void Record::portClosed(int port) { add("closed " + std::to_string(port)); }

void Record::portLost(int port, const Failure& failure) {
  cause_ = clean(failureText("", failure));
  add("lost " + std::to_string(port) + " " + firmlane::text(failure));
}

void Record::sent(int port, ByteSpan bytes) {
  heardInARow_ = 0;
  carry(Way::Sent, port, bytes, kSentInFull);
}

void Record::heard(int port, ByteSpan bytes) {
  heardInARow_ += bytes.size();
  carry(Way::Heard, port, bytes, heardInARow_ > kMostHeardInFull ? ByteStream::kEnds : kHeardInFull);
}

void Record::carry(Way way, int port, ByteSpan bytes, std::size_t inFull) {
  const Micros now = clock_.now();
  if (traffic_) {
    const bool endless = way == Way::Heard && heardInARow_ > kMostHeardInFull;
    const bool paused = !endless && now - traffic_->bytes.lastAt() > (way == Way::Sent ? kPauseSending : kPauseHearing);
    const bool full = way == Way::Heard && !endless && traffic_->bytes.size() + bytes.size() > kHeardInFull;
    if (traffic_->way != way || traffic_->port != port || paused || full) {
      closeTraffic();
    }
  }
  if (!traffic_) {
    traffic_ = {way, port, ByteStream(inFull)};
  }
  traffic_->bytes.add(bytes, now);
}

void Record::closeTraffic() {
  if (traffic_) {
    const Traffic traffic = *std::exchange(traffic_, std::nullopt);
    addAt(traffic.bytes.lastAt(), std::string(traffic.way == Way::Sent ? "sent " : "heard ") + std::to_string(traffic.port) +
                                      ": " + traffic.bytes.text());
  }
}

void Record::settle() {
  if (traffic_ && clock_.now() - traffic_->bytes.lastAt() > kPauseSending) {
    closeTraffic();
  }
}

void Record::formShown(const Form& form, bool modal) {
  add("show " + form.name() + (modal ? " modal" : ""));
  for (const Control* control : form.controls()) {
    note(*control);
  }
}

void Record::formHidden(const Form& form) {
  forget(form);
  add("hide " + form.name());
}

void Record::formUnloaded(const Form& form) {
  forget(form);
  add("unload " + form.name());
}

void Record::forget(const Form& form) {
  for (const Control* control : form.controls()) {
    said_.erase(control);
  }
}

void Record::controlChanged(const Control& control) {
  switch (control.kind()) {
    case ControlKind::Label:
    case ControlKind::ListBox:
      note(control);
      break;
    case ControlKind::Frame:
      for (const Control* inside : control.form().controls()) {
        if (inside->frame() == &control) {
          note(*inside);
        }
      }
      break;
    default:
      break;
  }
}

void Record::note(const Control& control) {
  if (isOneOf(kCounting, control.name())) {
    return;
  }
  const std::string words = wordsOf(control);
  const auto before = said_.find(&control);
  if (words.empty()) {
    // A form that goes takes its words along.
    if (before != said_.end() && control.form().Visible) {
      add("gone " + pathOf(control));
    }
    said_.erase(&control);
    return;
  }
  if (before != said_.end() && before->second == words) {
    return;
  }
  said_[&control] = words;
  add(words);
  const auto* outcome = dynamic_cast<const OutcomeLabel*>(&control);
  if (outcome != nullptr && outcome->Kind == std::string("failure")) {
    fail(outcome->Caption);
  }
}

void Record::fail(const std::string& words) {
  failure_ = clean(withoutContact(words));
  doingThen_ = doing_;
}

void Record::boxShown(const MessageBox& box) {
  std::string buttons;
  for (const MessageButton button : buttonsOf(box.buttons)) {
    buttons += " " + nameOf(kButtons, button);
  }
  add("box " + nameOf(kIcons, box.icon) + " " + inQuotes(box.title) + " " + inQuotes(withoutContact(box.text)) + buttons);
  if (box.icon == MessageIcon::Critical) {
    fail(box.text);
  }
}

/// A server that the contact form was sent to may lead elsewhere: what names the user's address is left out wherever it stands,
/// with the web address that it is part of, up to the end of the text.
std::string Record::clean(std::string text) const {
  constexpr std::size_t kShortest = 3;
  const std::size_t at = address_.find('@');
  if (at == std::string::npos || address_.size() < kShortest) {
    return text;
  }
  const std::string coded = address_.substr(0, at) + "%40" + address_.substr(at + 1);
  for (const std::string& address : {address_, coded}) {
    for (std::size_t found = 0; (found = text.find(address)) != std::string::npos;) {
      const std::size_t begin = std::min(text.rfind("http", found), found);
      text.replace(begin, std::min(text.find('"', found), text.size()) - begin, kNotKept);
    }
  }
  return text;
}

void Record::boxAnswered(MessageButton button) { add("answer " + nameOf(kButtons, button)); }

void Record::clicked(const Control& control) {
  contactTyped_ = nullptr;
  add("click " + pathOf(control));
}

void Record::chosen(const Control& list, int line) { add("choose " + pathOf(list) + " " + std::to_string(line)); }

void Record::typed(const Control& box, const std::string& text) {
  const bool kept = !isOneOf(kContactFields, box.name());
  if (box.name() == kContactFields.front()) {
    address_ = text;
  }
  if (!kept && contactTyped_ == &box) {
    return;  // how many keys were pressed is nobody's business either
  }
  contactTyped_ = kept ? nullptr : &box;
  add("type " + pathOf(box) + " " + (kept ? inQuotes(text) : std::string(kNotKept)));
}

void Record::closed(const Form& form) { add("close " + form.name()); }

void Record::requested(const std::string& url) {
  body_.reset();
  const std::string asked = withoutContact(url);
  contactSent_ = asked != url;
  add("get " + inQuotes(asked));
}

void Record::answered(int status, const std::string& statedLength) {
  body_.emplace(kBodyInFull);
  add("got " + std::to_string(status) + " length " + (statedLength.empty() ? "none" : inQuotes(statedLength)));
}

void Record::bodyTaken(ByteSpan bytes) {
  if (!body_) {
    return;
  }
  if (!bytes.empty()) {
    body_->add(bytes, clock_.now());
    return;
  }
  const ByteStream body = *std::exchange(body_, std::nullopt);
  const Bytes* whole = body.whole();
  if (contactSent_) {
    // The server may say who has registered; the program reads the number in front.
    const std::string text = whole == nullptr ? std::string() : std::string(whole->begin(), whole->end());
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    add("body " + inQuotes(text.substr(0, digits) + (digits == text.size() && whole != nullptr ? "" : kNotKept)));
    return;
  }
  add("body " + (whole != nullptr && isText(*whole) ? inQuotes({reinterpret_cast<const char*>(whole->data()), whole->size()})
                                                    : body.text(kLongestHex)));
}

void Record::requestFailed(const Failure& failure) {
  body_.reset();
  cause_ = clean(failureText("", failure));
  add("failed " + firmlane::text(failure));
}

void Record::requestDropped() {
  body_.reset();
  add("dropped");
}

void Record::fileMet(const std::string& path) {
  const std::string found = fileNote(path);
  std::string& said = files_[path];
  if (said != found) {
    said = found;
    add("file " + found);
  }
}

void Record::doing(const std::string& what) {
  if (doing_ != what) {
    doing_ = what;
    add("doing " + inQuotes(what));
  }
}

}  // namespace firmlane
