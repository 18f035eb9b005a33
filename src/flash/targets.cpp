#include "flash/targets.h"

#include <algorithm>
#include <array>
#include <iterator>

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

struct Route {
  std::string_view product;
  std::string_view target;
  ImageRoute route;
};
constexpr Route kRoutes[] = {
    {kVelarc, "NewHubFlash", ImageRoute::NewHub},   {kVelarc, "DSPFlash", ImageRoute::Flash},
    {kVelarc, "Front1Flash", ImageRoute::Front},    {kVelarc, "Front2Flash", ImageRoute::Front},
    {kWireless, "NewHubFlash", ImageRoute::NewHub}, {kWireless, "DSPFlash", ImageRoute::Flash},
    {kWireless, "RF1Flash", ImageRoute::RF},        {kWireless, "RF2Flash", ImageRoute::RF},
    {kWireless, "FrontFlash", ImageRoute::Front},
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

ImageRoute routeFor(const RunState& state) {
  if (state.ProductCode == kVelarc && state.OldVelarc) {
    return ImageRoute::None;
  }
  const auto* const found = std::find_if(std::begin(kRoutes), std::end(kRoutes), [&](const Route& route) {
    return route.product == state.ProductCode && route.target == state.FlashTarget;
  });
  return found == std::end(kRoutes) ? ImageRoute::None : found->route;
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
