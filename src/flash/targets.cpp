#include "flash/targets.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "state/file_names.h"

namespace firmlane {

namespace {

constexpr std::string_view kVelarc = "VC";
constexpr std::string_view kWireless = "WS";

constexpr int kBigBuffer = 8192;
/// Targets whose boot loader talks at 9600 on either product line.
constexpr std::array<std::string_view, 6> kSlowTargets = {"RF1Flash", "NewHubFlash", "RF2Flash",
                                                          "DSPFlash", "Front1Flash", "Front2Flash"};

constexpr const char* kSlow = "9600,N,8,1";
constexpr const char* kFast = "19200,N,8,1";

// What has reported itself as a second generation Velarc counts as one only where a Velarc is served: a receiver must not get a
// Velarc's image for a stray report on its line.
bool velarc2(const RunState& state) { return state.ProductCode == kVelarc && state.UnitIsVrc2 && !state.OldVelarc; }
bool receiver(const RunState& state) { return state.ProductCode == kWireless; }

struct Image {
  bool (*unit)(const RunState&);
  std::string_view target;  // empty for any
  ImageRule rule;
};
constexpr bool kWholeUnit = true;
constexpr Image kImages[] = {
    {firstGenerationVelarc, "", {ImageRoute::Flash, file_name::kOldVelarc, kWholeUnit}},
    {velarc2, "NewHubFlash", {ImageRoute::NewHub, file_name::kVelarc2Hub, !kWholeUnit}},
    {velarc2, "DSPFlash", {ImageRoute::Flash, file_name::kVelarc2Dsp, !kWholeUnit}},
    {velarc2, "Front1Flash", {ImageRoute::Front, nullptr, !kWholeUnit}},
    {velarc2, "Front2Flash", {ImageRoute::Front, nullptr, !kWholeUnit}},
    {receiver, "NewHubFlash", {ImageRoute::NewHub, file_name::kWirelessHub, !kWholeUnit}},
    {receiver, "DSPFlash", {ImageRoute::Flash, file_name::kWirelessDsp, !kWholeUnit}},
    {receiver, "RF1Flash", {ImageRoute::RF, file_name::kWirelessRf, !kWholeUnit}},
    {receiver, "RF2Flash", {ImageRoute::RF, file_name::kWirelessRf, !kWholeUnit}},
    {receiver, "FrontFlash", {ImageRoute::Front, nullptr, !kWholeUnit}},
};

struct EraseRule {
  int limit;
  int barInterval;
};
constexpr EraseRule kVelarcErase{80, 1500};
constexpr EraseRule kWirelessDspErase{80, 700};
constexpr EraseRule kWirelessErase{5, 50};

struct Processor {
  std::string_view target;
  std::string_view number;
};
constexpr Processor kProcessors[] = {
    {"NewHubFlash", "1"}, {"DSPFlash", "2"}, {"RF1Flash", "3"}, {"RF2Flash", "4"}, {"FrontFlash", "5"},
};

const EraseRule& eraseRule(const RunState& state) {
  if (state.ProductCode == kVelarc) {
    return kVelarcErase;
  }
  return state.ProductCode == kWireless && state.FlashTarget == "DSPFlash" ? kWirelessDspErase : kWirelessErase;
}

}  // namespace

LinkRule linkFor(const RunState& state) {
  LinkRule rule{nullptr, 0};
  if (std::find(kSlowTargets.begin(), kSlowTargets.end(), state.FlashTarget) != kSlowTargets.end()) {
    rule = {kSlow, kBigBuffer};
  } else if (state.ProductCode == kVelarc) {
    rule.settings = kFast;
  } else if (state.ProductCode == kWireless) {
    rule.settings = kSlow;
  }
  if (state.ProductCode == kVelarc && state.LegacyLink) {
    rule.settings = kFast;
  }
  return rule;
}

ImageRule imageFor(const RunState& state) {
  const auto* const found = std::find_if(std::begin(kImages), std::end(kImages), [&](const Image& image) {
    return image.unit(state) && (image.target.empty() || image.target == state.FlashTarget);
  });
  return found == std::end(kImages) ? ImageRule{ImageRoute::None, nullptr, !kWholeUnit} : found->rule;
}

int eraseLimitFor(const RunState& state) { return eraseRule(state).limit; }

int eraseBarIntervalFor(const RunState& state) { return eraseRule(state).barInterval; }

std::string_view processorNumber(std::string_view target) {
  const auto* const found =
      std::find_if(std::begin(kProcessors), std::end(kProcessors), [&](const Processor& p) { return p.target == target; });
  return found == std::end(kProcessors) ? std::string_view() : found->number;
}

std::string unitName(const RunState& state) { return state.ProductCode == kVelarc ? "Vel-Arc" : "Receiver"; }

}  // namespace firmlane
