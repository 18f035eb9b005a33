// Whatever a ready converted front panel image holds: it is refused in words, or it is digit text that a run can send to its end.
#include "images/digit_text.h"

#include "bench.h"
#include "platform/failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace firmlane;
  const std::string file(reinterpret_cast<const char*>(data), size);
  try {
    std::string field;
    static_cast<void>(lastField(file, "FNTLCDc.s19", field));
    fuzz::require(field.size() <= file.size());
    requireDigitText(field, "FNTLCDc.s19");
    fuzz::require(!field.empty() && field.size() <= kDigitTextLimit && field.size() % 4 == 0);
    for (std::size_t i = 0; i < field.size(); i += 2) {
      const std::string group = field.substr(i, 2);
      fuzz::require(std::to_string(Asc2Num(group) + (Asc2Num(group) < 10 ? '0' : 'A' - 10)) == group);
    }
  } catch (const Failure& failure) {
    fuzz::require(!failure.description().empty());
  }
  return 0;
}
