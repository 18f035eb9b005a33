// Whatever an answer holds, cut short or too long: it is digested without a look beyond its end, and what stands on the form is a
// version or nothing. Answers of one input follow each other, as those of one unit do.
#include "link/version_answers.h"

#include "bench.h"
#include "world.h"

namespace {

using namespace firmlane;

/// Digits, points, and what stands around a model's mark.
bool readable(const std::string& caption) { return caption.find_first_not_of("0123456789.-N/A QDR()") == std::string::npos; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  test::World world;
  VersionAnswers answers(world.state, world.frmVersion);
  world.frmVersion.OnLoad = [] {};
  world.frmVersion.Load();
  world.state.ProductCode = input.choice(2) == 0 ? "WS" : "VC";
  while (!input.empty()) {
    const ByteSpan answer = input.piece(1 + input.choice(40));
    world.state.IdQueue.at(static_cast<std::size_t>(world.state.IdQueueRead)) = std::string(answer.begin(), answer.end());
    answers.GetID2();
    fuzz::require(world.state.IdQueueRead >= 0 && world.state.IdQueueRead < 30);
  }
  const FrmVersion& form = world.frmVersion;
  for (const Label* label : {&form.lblSN, &form.lblHub, &form.lblDSP, &form.lblRF1, &form.lblRF2, &form.lblFront}) {
    fuzz::require(readable(label->Caption));
  }
  return 0;
}
