#include "progress/activity.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

namespace firmlane {

namespace {

struct KnownProcessor {
  std::string_view target;
  std::string_view name;
  int number;
  /// Product line whose units have it without being asked; empty where only a run tells.
  std::string_view usualFor = {};
  std::string_view alsoFor = {};
};
constexpr KnownProcessor kProcessors[] = {
    {"NewHubFlash", "Hub", 1, "WS", "VC"}, {"DSPFlash", "DSP", 2, "WS", "VC"}, {"RF1Flash", "RF1", 3, "WS"},
    {"RF2Flash", "RF2", 4, "WS"},          {"FrontFlash", "Front", 5, "WS"},   {"Front1Flash", "Front A", 3},
    {"Front2Flash", "Front B", 4},         {"OldVRCFlash", "DSP", 1},
};

ProcessorReport reportOf(const KnownProcessor& known) {
  return {.target = std::string(known.target), .name = std::string(known.name), .number = known.number};
}

ProcessorReport reportOf(const std::string& target) {
  const auto* found = std::ranges::find(kProcessors, std::string_view(target), &KnownProcessor::target);
  return found == std::end(kProcessors) ? ProcessorReport{.target = target, .name = target} : reportOf(*found);
}

std::vector<ProcessorReport> usualProcessors(std::string_view productCode) {
  std::vector<ProcessorReport> reports;
  for (const KnownProcessor& known : kProcessors) {
    if (known.usualFor == productCode || known.alsoFor == productCode) {
      reports.push_back(reportOf(known));
    }
  }
  return reports;
}

}  // namespace

const char* nameOf(Doing doing) {
  constexpr std::array kNames = {"nothing",         "reading the unit", "waiting for the power switch",
                                 "erasing",         "sending",          "waiting for the verdict",
                                 "fetching a list", "downloading",      "searching ports"};
  return kNames.at(static_cast<std::size_t>(doing));
}

const char* nameOf(ProcessorState state) {
  constexpr std::array kNames = {"not selected", "pending", "running", "done", "failed"};
  return kNames.at(static_cast<std::size_t>(state));
}

Activity::Span::Span(Activity& activity, Doing doing, Micros limit, int part, int parts)
    : activity_(activity), number_(++activity.lastNumber_) {
  const Phase around = activity.now();
  const bool inherits = parts == 0 && around.doing == doing;
  const Micros start = activity.clock_.now();
  activity.spans_.push_back({number_,
                             {.doing = doing,
                              .since = start,
                              .limit = limit,
                              .moved = start,
                              .part = inherits ? around.part : part,
                              .parts = inherits ? around.parts : parts}});
  activity.changed();
}

Activity::Span::~Span() {
  std::erase_if(activity_.spans_, [this](const Open& open) { return open.number == number_; });
  activity_.changed();
}

Activity::Run::Run(Activity& activity, const std::string& productCode, std::string target, std::function<bool()> succeeded)
    : activity_(activity), target_(std::move(target)), succeeded_(std::move(succeeded)) {
  if (activity.processors_.empty() || activity.productCode_ != productCode) {
    activity.setProcessors(productCode, target_ == "OldVRCFlash" ? std::vector<ProcessorReport>() : usualProcessors(productCode));
  }
  activity.setState(target_, ProcessorState::Running);
}

Activity::Run::~Run() { activity_.setState(target_, succeeded_() ? ProcessorState::Done : ProcessorState::Failed); }

Micros Activity::left() const {
  const Phase phase = now();
  return std::max<Micros>(0, phase.since + phase.limit - clock_.now());
}

void Activity::progress(std::int64_t done, std::int64_t total) {
  if (spans_.empty()) {
    return;
  }
  const bool anew = spans_.back().phase.done == 0 || stalled();
  Phase& phase = spans_.back().phase;
  if (done == phase.done && total == phase.total) {
    return;
  }
  if (done > phase.done) {
    phase.moved = clock_.now();
    if (anew) {
      spans_.back().measuredSince = phase.moved;
      spans_.back().measuredFrom = done;
    }
  }
  phase.done = done;
  phase.total = total;
  changed();
}

bool Activity::stalled() const {
  constexpr Micros kNoticeable = 3 * kSecond;
  const Phase phase = now();
  return phase.doing == Doing::Sending && phase.done < phase.total && clock_.now() - phase.moved > kNoticeable;
}

std::optional<Micros> Activity::estimate() const {
  constexpr Micros kSteady = 3 * kSecond;  // a shorter look at the line would tell of its buffers
  const Phase phase = now();
  if (phase.doing != Doing::Sending || phase.done >= phase.total || stalled()) {
    return std::nullopt;
  }
  const Micros measured = phase.moved - spans_.back().measuredSince;
  const std::int64_t sent = phase.done - spans_.back().measuredFrom;
  if (measured < kSteady || sent <= 0) {
    return std::nullopt;
  }
  const double perByte = static_cast<double>(measured) / static_cast<double>(sent);
  const auto left = static_cast<Micros>(perByte * static_cast<double>(phase.total - phase.done));
  return std::max<Micros>(0, left - (clock_.now() - phase.moved));
}

void Activity::used(Micros ofLimit) {
  constexpr Micros kNoticeable = kSecond;
  if (spans_.empty() || spans_.back().phase.limit == 0) {
    return;
  }
  Micros& since = spans_.back().phase.since;
  if (clock_.now() - since - ofLimit > kNoticeable) {
    since = clock_.now() - ofLimit;
    changed();
  }
}

void Activity::setProcessors(const std::string& productCode, std::vector<ProcessorReport> processors) {
  productCode_ = productCode;
  if (processors != processors_) {
    processors_ = std::move(processors);
    changed();
  }
}

void Activity::setState(const std::string& target, ProcessorState state) {
  auto found = std::find_if(processors_.begin(), processors_.end(), [&](const auto& known) { return known.target == target; });
  if (found == processors_.end()) {
    processors_.push_back(reportOf(target));
    found = std::prev(processors_.end());
  }
  found->state = state;
  changed();
}

std::shared_ptr<void> Activity::listen(std::function<void()> changed) {
  auto listener = std::make_shared<std::function<void()>>(std::move(changed));
  listeners_.emplace_back(listener);
  return listener;
}

void Activity::changed() {
  std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
  for (std::size_t i = 0; i < listeners_.size(); ++i) {  // one that hears may come or go meanwhile
    if (const auto listener = listeners_[i].lock()) {
      (*listener)();
    }
  }
}

}  // namespace firmlane
