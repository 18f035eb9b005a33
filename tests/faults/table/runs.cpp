#include "runs.h"

namespace firmlane::test {

namespace {

constexpr std::array kWizardMoments = {Moment::Announce, Moment::Erase,   Moment::FirstByte, Moment::MiddleByte,
                                       Moment::LastByte, Moment::Verdict, Moment::Between,   Moment::FinalRead};
constexpr std::array kClassicMoments = {Moment::Announce,   Moment::Erase,    Moment::FirstByte,
                                        Moment::MiddleByte, Moment::LastByte, Moment::Verdict};
constexpr std::array kFactoryMoments = {Moment::Announce, Moment::Erase,   Moment::FirstByte,    Moment::MiddleByte,
                                        Moment::LastByte, Moment::Verdict, Moment::SerialNumber, Moment::Preset};

constexpr Micros kShortErase = 5 * kSecond;
constexpr Micros kLongErase = 80 * kSecond;
constexpr Micros kSilenceAfterStream = 60 * kSecond;

constexpr std::array<Run, 7> kRuns = {{
    {"Receiver, Hub", Pages::Wireless, "lwx52", "Hub", "DSP", kShortErase, kSilenceAfterStream, kWizardMoments},
    {"Receiver, DSP", Pages::Wireless, "lwx52", "DSP", "Front", kLongErase, 5 * kSecond, kWizardMoments},
    {"Receiver, Front", Pages::Wireless, "lwx51", "Front", "", kShortErase, kSilenceAfterStream, kClassicMoments},
    {"Velarc2, Hub", Pages::Velarc2, "velarc2", "Hub", "DSP", kLongErase, kSilenceAfterStream, kWizardMoments},
    {"Velarc2, DSP", Pages::Velarc2, "velarc2", "DSP", "", kLongErase, 5 * kSecond, kClassicMoments},
    {"Older Velarc", Pages::OldVelarc, "velarc", "DSP", "", kLongErase, 10 * kSecond, kClassicMoments},
    {"Production line", Pages::ProductionLine, "lwx51", "DSP", "", kLongErase, 5 * kSecond, kFactoryMoments},
}};

struct MomentName {
  Moment moment;
  const char* name;
};
constexpr std::array<MomentName, 10> kMomentNames = {{
    {Moment::Announce, "announcement"},
    {Moment::Erase, "erase"},
    {Moment::FirstByte, "first byte"},
    {Moment::MiddleByte, "middle byte"},
    {Moment::LastByte, "last byte"},
    {Moment::Verdict, "verdict"},
    {Moment::Between, "between processors"},
    {Moment::FinalRead, "final reading"},
    {Moment::SerialNumber, "serial number"},
    {Moment::Preset, "preset"},
}};

/// What a fault needs of the moment.
enum class Needs {
  Nothing,
  Frame,    // something that the unit is about to say
  Limit,    // a frame with a time limit
  Verdict,  // a processor that is being programmed
  OpenLine
};

struct FaultRow {
  Fault fault;
  const char* name;
  Needs needs;
};
constexpr std::array<FaultRow, kFaults.size()> kFaultRows = {{
    {Fault::Silence, "the unit falls silent", Needs::OpenLine},
    {Fault::NoiseBefore, "noise before its next frame", Needs::Frame},
    {Fault::NoiseInside, "noise inside its next frame", Needs::Frame},
    {Fault::WrongChecksum, "its next frame has a wrong checksum", Needs::Frame},
    {Fault::JustInTime, "it answers just in time", Needs::Limit},
    {Fault::JustTooLate, "it answers just too late", Needs::Limit},
    {Fault::Twice, "its next frame comes twice", Needs::Frame},
    {Fault::Cut, "its next frame is cut", Needs::Frame},
    {Fault::OtherProcessor, "another processor answers in its place", Needs::Verdict},
    {Fault::EarlyVerdict, "its verdict \"programmed\" comes early", Needs::Verdict},
    {Fault::WrongVerdict, "the verdict \"failed\" comes", Needs::Verdict},
    {Fault::HeldLine, "it holds the line back", Needs::OpenLine},
    {Fault::LostLine, "the adapter is pulled", Needs::OpenLine},
    {Fault::Box, "a message box stands for a minute", Needs::OpenLine},
    {Fault::Exit, "Exit is pressed", Needs::Nothing},
    {Fault::Closed, "the window is closed", Needs::Nothing},
    {Fault::PowerFailure, "the computer loses power", Needs::Nothing},
}};

const FaultRow& rowOf(Fault fault) { return kFaultRows.at(static_cast<std::size_t>(fault)); }

bool isStream(Moment moment) { return moment == Moment::FirstByte || moment == Moment::MiddleByte || moment == Moment::LastByte; }

bool isProgramming(Moment moment) { return moment <= Moment::Verdict; }

}  // namespace

const char* momentName(Moment moment) { return kMomentNames.at(static_cast<std::size_t>(moment)).name; }

const char* faultName(Fault fault) { return rowOf(fault).name; }

std::span<const Run> runs() { return kRuns; }

bool applies(const Run& run, Moment moment, Fault fault) {
  switch (rowOf(fault).needs) {
    case Needs::Nothing:
      return true;
    case Needs::OpenLine:
      return moment != Moment::Between;
    case Needs::Limit:
      // Nobody hurries the unit that is read at the end, and the limit of a stream is its verdict's.
      return moment != Moment::Between && moment != Moment::FinalRead && !isStream(moment);
    case Needs::Frame:
      // Within a stream only a front panel speaks; the others' next frame is the verdict, which has its own column.
      return moment != Moment::Between && (!isStream(moment) || std::string_view(run.processor) == "Front");
    case Needs::Verdict:
      return isProgramming(moment);
  }
  return false;
}

}  // namespace firmlane::test
