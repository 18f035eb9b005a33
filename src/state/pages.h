// The pages of the wizards, by the numbers that WizardPage and AutoPage hold. A page is named after what the user has before him
// while its number stands.
#pragma once

#include <cstdint>

namespace firmlane {

/// WizardPage: the classic wizard on Form1.
namespace classic_page {
inline constexpr std::int16_t kStart = -2;
inline constexpr std::int16_t kProducts = -1;
inline constexpr std::int16_t kTask = 0;
inline constexpr std::int16_t kFirmwareFetched = 1;
inline constexpr std::int16_t kFirmwareContact = 2;
inline constexpr std::int16_t kFirmwareList = 3;
inline constexpr std::int16_t kFirmwareDownloaded = 4;
inline constexpr std::int16_t kReadyToFlash = 5;
inline constexpr std::int16_t kPowerOff = 6;
inline constexpr std::int16_t kFlashed = 7;
inline constexpr std::int16_t kSoftwareFetched = 20;
inline constexpr std::int16_t kSoftwareContact = 21;
inline constexpr std::int16_t kSoftwareList = 22;
inline constexpr std::int16_t kSoftwareDownloaded = 23;
inline constexpr std::int16_t kFetchFailed = 50;
}  // namespace classic_page

/// AutoPage: the auto wizards.
namespace auto_page {
inline constexpr std::int16_t kWelcome = -1;
inline constexpr std::int16_t kOptions = 0;
inline constexpr std::int16_t kUnit = 2;
inline constexpr std::int16_t kSystems = 3;
inline constexpr std::int16_t kReady = 4;
inline constexpr std::int16_t kProcessorDone = 5;
inline constexpr std::int16_t kAllDone = 6;
inline constexpr std::int16_t kDownloadOnly = 10;
inline constexpr std::int16_t kVerdict = 19;
inline constexpr std::int16_t kRestart = 20;
}  // namespace auto_page

}  // namespace firmlane
