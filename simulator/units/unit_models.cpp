#include "units/unit_models.h"

#include <algorithm>
#include <array>

namespace firmlane::sim {

namespace {

constexpr ProcessorModel kHub = {"Hub", ImageKind::WirelessHub, LoaderKind::Records, 32, 33, 2 * kSecond, {2, 10, 0}, 6};
constexpr ProcessorModel kDsp = {"DSP", ImageKind::WirelessDsp, LoaderKind::Plain, 1, 1, 8 * kSecond, {2, 29, 0}, 0};
constexpr ProcessorModel kRf1 = {"RF1", ImageKind::WirelessRf, LoaderKind::Records, 48, 48, 2 * kSecond, {1, 14, 0}, 8};
constexpr ProcessorModel kRf2 = {"RF2", ImageKind::WirelessRf, LoaderKind::Records, 64, 64, 2 * kSecond, {1, 15, 0}, 10};
constexpr ProcessorModel kFront = {"Front", ImageKind::WirelessFront, LoaderKind::Front, 80, 80, 2 * kSecond, {2, 21, 0}, 12};

constexpr std::array kOneChannel = {kHub, kDsp, kRf1, kFront};
constexpr std::array kTwoChannels = {kHub, kDsp, kRf1, kRf2, kFront};

constexpr ProcessorModel kVelarc2Hub = {"Hub", ImageKind::Velarc2Hub, LoaderKind::Records, 37, 33, 4 * kSecond, {5, 0, 1}, 6};
constexpr ProcessorModel kVelarc2Dsp = {"DSP", ImageKind::Velarc2Dsp, LoaderKind::Plain, 6, 1, 8 * kSecond, {5, 0, 2}, 9};
constexpr ProcessorModel kFrontA = {"Front A", ImageKind::Velarc2Front, LoaderKind::Front, 53, 53, 3 * kSecond, {1, 2, 3}, 12};
constexpr ProcessorModel kFrontB = {"Front B", ImageKind::Velarc2Front, LoaderKind::Front, 58, 58, 3 * kSecond, {1, 2, 4}, 15};

// A DSP below 5.00: 3 x 128 + 103 is 487, which the program reads as 4.87.
constexpr Version kVersion487 = {3, 103, 0};
constexpr ProcessorModel kVelarc2OldDsp = {"DSP", ImageKind::Velarc2Dsp, LoaderKind::Plain, 6, 1, 8 * kSecond, kVersion487, 9};

constexpr std::array kOneFront = {kVelarc2Hub, kVelarc2Dsp, kFrontA};
constexpr std::array kTwoFronts = {kVelarc2Hub, kVelarc2Dsp, kFrontA, kFrontB};
constexpr std::array kOneFrontOldDsp = {kVelarc2Hub, kVelarc2OldDsp, kFrontA};

constexpr std::array kWholeVelarc = {
    ProcessorModel{"DSP", ImageKind::OldVelarc, LoaderKind::SevenBit, 1, 1, 8 * kSecond, {5, 2, 0}, 9}};
constexpr std::array kWholeVelarcOldDsp = {
    ProcessorModel{"DSP", ImageKind::OldVelarc, LoaderKind::SevenBit, 1, 1, 8 * kSecond, kVersion487, 0}};

constexpr std::array<UnitModel, 10> kModels = {{
    {"lwx51", "LWX-51 (One Channel)", Family::Wireless, 2, 57600, 9600, 1201, kOneChannel},
    {"lwx52", "LWX-52 (Two Channel)", Family::Wireless, 5, 57600, 9600, 1302, kTwoChannels},
    {"lwx51qdr", "LWX-51QDR (One Channel)", Family::Wireless, 6, 57600, 9600, 1403, kOneChannel},
    {"lwx52qdr", "LWX-52QDR (Two Channel)", Family::Wireless, 7, 57600, 9600, 1504, kTwoChannels},
    {"lwx9600", "LWX-51 on the older link", Family::Wireless, 2, 9600, 9600, 1605, kOneChannel},
    {"velarc2", "Velarc2 (Front A)", Family::Velarc2, 2, 19200, 9600, 2101, kOneFront},
    {"velarc2b", "Velarc2 (Front A and B)", Family::Velarc2, 3, 19200, 9600, 2202, kTwoFronts},
    {"velarc2-old-dsp", "Velarc2 with a DSP below 5.00", Family::Velarc2, 2, 19200, 9600, 2303, kOneFrontOldDsp},
    {"velarc", "Velarc", Family::OldVelarc, 0, 19200, 19200, 2404, kWholeVelarc},
    {"velarc-old-dsp", "Velarc with a DSP below 5.00", Family::OldVelarc, 0, 19200, 19200, 2505, kWholeVelarcOldDsp},
}};

}  // namespace

std::span<const UnitModel> unitModels() { return kModels; }

const UnitModel* findUnitModel(std::string_view name) {
  const auto* found = std::find_if(kModels.begin(), kModels.end(), [name](const UnitModel& model) { return name == model.name; });
  return found == kModels.end() ? nullptr : found;
}

}  // namespace firmlane::sim
