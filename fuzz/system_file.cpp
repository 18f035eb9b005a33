// Whatever a system version file holds: its whole records are taken, a set can be looked up and chosen, and what is saved then
// reads back as the same table.
#include "wizard/auto/system_file.h"

#include "bench.h"
#include "wizard/auto/velarc2.h"
#include "wizard/auto/wireless.h"
#include "world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace firmlane;
  fuzz::Input input(data, size);
  test::World world;
  world.screen.answerOthers();
  world.frmAuto.Load();
  world.frmVRCAuto.Load();
  const bool wireless = input.choice(2) == 0;
  const ProductParameters& product = wireless ? wirelessParameters() : velarc2Parameters();
  const WizardWindow window = wireless ? wirelessWindow(world.frmAuto) : velarc2Window(world.frmVRCAuto);
  FirmwareSet set(world.files);
  const AutoWizardSetting setting{world.host,    world.wizard,     world.files,      set,           world.state,   world.form1,
                                  world.frmPort, world.frmVersion, world.frmRecover, world.frmDBUG, world.activity};
  SystemFile file(setting, window, product);
  world.state.SelectedSystem = static_cast<std::int16_t>(input.choice(kSystems));
  (world.state.*product.systems)[0].SystemVersion = "3.2";

  world.directory.write(product.sysFileName, input.text());
  file.ReadSysFile();
  file.ShowSysVer();
  fuzz::require(world.state.MatchedSystem == kNoSystem ||
                (world.state.MatchedSystem >= 0 && world.state.MatchedSystem <= product.lastRowLookedUp));
  file.UpdateFileSysVer();
  file.SaveSysFile();
  const auto saved = world.state.*product.sysFile;
  (world.state.*product.sysFile) = {};
  file.ReadSysFile();
  // Row 0 tells which set lies on disk, and this one has not come down.
  const auto& again = world.state.*product.sysFile;
  fuzz::require(std::equal(saved.begin() + 1, saved.end(), again.begin() + 1));
  fuzz::require(world.screen.boxes().empty());
  return 0;
}
