// What the program's files are called. A file of the maker's set has the same name everywhere: where it is stored, where it is
// sent from, and among the names that nothing else out of a list may have.
#pragma once

namespace firmlane::file_name {

inline constexpr const char* kWirelessDsp = "wls.bin";
inline constexpr const char* kWirelessHub = "HUBSL.s19";
inline constexpr const char* kWirelessRf = "RFSL.s19";
inline constexpr const char* kWirelessFront = "FNTLCDc.s19";
inline constexpr const char* kVelarc2Dsp = "vrc2.bin";
inline constexpr const char* kVelarc2Hub = "vrc2hub.s19";
inline constexpr const char* kVelarc2Front = "vrc2fnt.s19";
inline constexpr const char* kVelarc2Fourth = "vrc1.bin";
inline constexpr const char* kOldVelarc = "vrc.bin";

inline constexpr const char* kWirelessSystems = "LWXSys.lwx";
inline constexpr const char* kVelarc2Systems = "VRC2Sys.vrc";
inline constexpr const char* kWirelessList = "updateWS.txt";
inline constexpr const char* kVelarcList = "updateVC.txt";
inline constexpr const char* kSerialNumber = "sn.wls";
inline constexpr const char* kMicModels = "micmodels.lmm";

/// All files that a firmware set of either line can have.
inline constexpr const char* kSetFiles[] = {kWirelessDsp, kWirelessHub, kWirelessRf,   kWirelessFront,
                                            kVelarc2Dsp,  kVelarc2Hub,  kVelarc2Front, kVelarc2Fourth};

/// What else the program keeps in its directory, or is delivered with.
inline constexpr const char* kOtherOwn[] = {
    kOldVelarc,
    kWirelessSystems,
    kVelarc2Systems,
    kWirelessList,
    kVelarcList,
    kSerialNumber,
    kMicModels,
    "ports",
    "firmlane",
    "firmlane.exe",
    "firmlane-console",
    "firmlane-console.exe",
    "firmlane-simulator",
    "firmlane-simulator.exe",
    "firmlane-demo",
    "firmlane-demo.exe",
    "LICENSE",
    "README",
};

}  // namespace firmlane::file_name
