// Ways in which a unit misbehaves on request.
#pragma once

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/bytes.h"

namespace firmlane::sim {

struct Faults {
  bool silent = false;                 // hears, but sends nothing
  bool wrongChecksum = false;          // every frame carries a checksum that is off by one
  bool lateAnswer = false;             // answers half a second after it was asked
  bool lateErase = false;              // reports the erase after a minute and a half
  bool lateVerdict = false;            // gives its verdict after twenty seconds
  bool refuses = false;                // verdict "failed", whatever the image
  bool refusesErase = false;           // reports "failed" in place of the erase
  bool dropsAcknowledgements = false;  // after the third: front panel batches and microphone groups
  bool diesInStream = false;           // hears nothing any more after the first 200 bytes of an image
  bool earlyVerdict = false;           // gives its verdict after the first 200 bytes of an image
  bool noVerdict = false;              // takes the image and says nothing
  bool holdsLine = false;              // holds the program back for good after the first 200 bytes of an image
  bool wrongReadBack = false;          // reports another serial number than it was given, twice
  bool cutAnswer = false;              // breaks off in the middle of what it answers when it runs
  bool noise = false;                  // sends a few random bytes before each frame
  int wrongReadBacks = 0;              // reported so far
};

/// Sets one fault by its name, such as "wrong-checksum"; "late" sets all three kinds, "none" clears everything. False for an
/// unknown name.
bool setFault(Faults& faults, std::string_view name);
/// All names that setFault knows.
std::vector<std::string_view> faultNames();
/// The names of the faults that are set, joined by blanks.
std::string faultsText(const Faults& faults);

/// Does to a frame what the faults wrong-checksum and noise say. `checksumAt` is the checksum's index.
void spoilFrame(Bytes& frame, std::size_t checksumAt, const Faults& faults, std::minstd_rand& random);
/// Does to the answer's serial number what the fault wrong-read-back says, and ends it after the second.
void spoilReadBack(std::int32_t& number, Faults& faults);

}  // namespace firmlane::sim
