// Whatever an S-record file for a front panel holds: it is told in a box and leaves no image, or it leaves digit text of its data
// and no box.
#include "bench.h"
#include "images/digit_text.h"
#include "images/front_image_loader.h"
#include "world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace firmlane;
  fuzz::Input input(data, size);
  test::World world;
  world.screen.answerOthers();
  world.state.ProductCode = "VC";
  world.directory.write("vrc2fnt.s19", input.text());
  const DebugNotes notes(world.state, world.frmDBUG);
  FrontImageLoader loader(world.host, world.files, notes, world.state, world.form1);
  const bool loaded = loader.LoadFrontImage();
  fuzz::require(loaded == world.screen.boxes().empty());
  fuzz::require(loaded != world.state.FrontImage.empty());
  if (loaded) {
    requireDigitText(world.state.FrontImage, "vrc2fnt.s19");
    fuzz::require(world.state.FrontImage.size() == static_cast<std::size_t>(world.state.FrontCodeBytes) * 4);
    fuzz::require(world.state.FrontImage.size() <= 2 * size);
  }
  return 0;
}
