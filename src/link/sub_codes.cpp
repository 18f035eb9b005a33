#include "link/sub_codes.h"

#include <algorithm>
#include <iterator>

namespace firmlane {

namespace {

using Action = SubCodeAction;

bool always(const RunState&, bool) { return true; }
bool notWireless(const RunState& s, bool) { return s.ProductCode != "WS"; }
bool wirelessMic(const RunState& s, bool micMode) { return s.ProductCode == "WS" && micMode; }
bool dsp(const RunState& s, bool) { return s.FlashTarget == "DSPFlash"; }
bool wirelessDsp(const RunState& s, bool micMode) { return s.ProductCode == "WS" && !micMode && dsp(s, micMode); }
bool notWirelessOrDsp(const RunState& s, bool micMode) { return notWireless(s, micMode) || dsp(s, micMode); }
bool hub(const RunState& s, bool) { return s.FlashTarget == "NewHubFlash"; }
bool rf1(const RunState& s, bool) { return s.FlashTarget == "RF1Flash"; }
bool rf2(const RunState& s, bool) { return s.FlashTarget == "RF2Flash"; }
bool front(const RunState& s, bool) { return s.FlashTarget == "FrontFlash"; }
bool frontA(const RunState& s, bool) { return s.FlashTarget == "Front1Flash"; }
bool frontB(const RunState& s, bool) { return s.FlashTarget == "Front2Flash"; }
bool anyFront(const RunState& s, bool m) { return front(s, m) || frontA(s, m) || frontB(s, m); }

constexpr bool kWantAcked = true;
constexpr bool kIdle = true;
constexpr bool kSecond = true;

constexpr SubCodeRule kRules[] = {
    {1, notWireless, Action::Announced, &CommandSet::Send_WantToProgram, kWantAcked},
    {1, wirelessMic, Action::Announced, &CommandSet::SendWantToProgramMic},
    {1, wirelessDsp, Action::Announced, &CommandSet::Send_WantToProgram},
    {2, notWirelessOrDsp, Action::Erased},
    {3, notWirelessOrDsp, Action::Programmed},
    {4, notWirelessOrDsp, Action::Failed},
    {6, dsp, Action::Announced, &CommandSet::Send_WantToProgram, !kWantAcked, !kIdle, TimeBox::None, kSecond},
    {6, always, Action::SecondGeneration, nullptr, !kWantAcked, !kIdle, TimeBox::None, kSecond},
    {7, always, Action::Erased},
    {8, always, Action::Programmed},
    {9, notWirelessOrDsp, Action::Failed},
    {10, always, Action::PresetLoaded},
    {32, hub, Action::Announced, &CommandSet::Send_WantToProgramNH, !kWantAcked, kIdle, TimeBox::Wireless},
    {33, hub, Action::Erased},
    {34, hub, Action::Programmed},
    {35, hub, Action::Failed},
    {37, hub, Action::Announced, &CommandSet::Send_WantToProgramNH, !kWantAcked, kIdle, TimeBox::Velarc, kSecond},
    {37, always, Action::SecondGeneration, nullptr, !kWantAcked, !kIdle, TimeBox::None, kSecond},
    {38, hub, Action::Erased},
    {39, hub, Action::Programmed},
    {39, always, Action::SerialStored},
    {40, hub, Action::Failed},
    {48, rf1, Action::Announced, &CommandSet::Send_WantToProgramRF1},
    {49, rf1, Action::Erased},
    {50, rf1, Action::Programmed},
    {51, rf1, Action::Failed},
    {53, frontA, Action::Announced, &CommandSet::Send_WantToProgramFront1, !kWantAcked, kIdle},
    {54, frontA, Action::Erased},
    {55, frontA, Action::Programmed},
    {56, frontA, Action::Failed},
    {58, frontB, Action::Announced, &CommandSet::Send_WantToProgramFront2, !kWantAcked, kIdle},
    {59, frontB, Action::Erased},
    {60, frontB, Action::Programmed},
    {61, frontB, Action::Failed},
    {64, rf2, Action::Announced, &CommandSet::Send_WantToProgramRF2, !kWantAcked, kIdle},
    {65, rf2, Action::Erased},
    {66, rf2, Action::Programmed},
    {67, rf2, Action::Failed},
    {80, front, Action::Announced, &CommandSet::Send_WantToProgramFront, !kWantAcked, kIdle},
    {81, front, Action::Erased},
    {82, anyFront, Action::Programmed},
    {83, anyFront, Action::Failed},
    {86, anyFront, Action::NextBlock},
    {87, anyFront, Action::VectorTable},
};

}  // namespace

const SubCodeRule* findSubCode(std::uint8_t subCode, const RunState& state, bool micMode) {
  const auto* rule = std::find_if(std::begin(kRules), std::end(kRules), [&](const SubCodeRule& candidate) {
    return candidate.subCode == subCode && candidate.holds(state, micMode);
  });
  return rule == std::end(kRules) ? nullptr : rule;
}

}  // namespace firmlane
