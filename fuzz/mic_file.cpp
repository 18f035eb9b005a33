// Whatever micmodels.lmm holds: it ends in a failure that names line and field, or in groups that a receiver can take.
#include "personal/mic_file.h"

#include "bench.h"
#include "platform/failure.h"

namespace {

using firmlane::MicFile;
using firmlane::MicGroup;
using firmlane::fuzz::require;

/// Seven-bit values, but for the upper byte of the width.
void checkFilter(const MicGroup& group) {
  constexpr std::size_t kUpperWidth = 4;
  for (std::size_t i = 0; i < group.size(); ++i) {
    require(i == kUpperWidth || group[i] < 128);
  }
}

void readTable(MicFile& file) {
  for (int model = 0; model < MicFile::kModels; ++model) {
    checkFilter(file.modelLine().filter);
    for (int i = 0; i < MicFile::kFilterLines; ++i) {
      const int before = file.percent();
      checkFilter(file.filterLine());
      require(before <= file.percent() && file.percent() <= 100);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    MicFile file(std::string(reinterpret_cast<const char*>(data), size));
    readTable(file);
  } catch (const firmlane::Failure& failure) {
    require(failure.description().starts_with("line ") || size > 32767);
  }
  return 0;
}
