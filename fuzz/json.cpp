// Whatever a text holds: it is no JSON value, or one that reads back from its own text as the same value. Texts of the program
// come through the conversions unharmed.
#include "console/json.h"

#include "bench.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace firmlane;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (const std::optional<Json> value = Json::parse(text)) {
    const std::string line = value->text();
    fuzz::require(line.find('\n') == std::string::npos);
    fuzz::require(Json::parse(line) == value);
  }
  fuzz::require(utf8AsHeld(heldAsUtf8(text)) == text);
  fuzz::require(isUtf8(heldAsUtf8(text)) && isUtf8(shownAsUtf8(text)));
  return 0;
}
