// Hundreds of random runs over each product line, and the proof that they can fail.
#include "campaign.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "wizard/auto/wireless.h"

namespace firmlane::test {
namespace {

/// How many runs of each kind; FIRMLANE_RUNS asks for more, for a night.
std::uint32_t runs() {
  const char* wanted = std::getenv("FIRMLANE_RUNS");
  return wanted == nullptr ? 100 : static_cast<std::uint32_t>(std::max(1, std::atoi(wanted)));
}

void playAll(Line line) {
  std::uint32_t verdicts = 0;
  for (std::uint32_t seed = 1; seed <= runs(); ++seed) {
    RandomRun run(line, seed);
    run.play();
    ASSERT_EQ(run.fault(), "") << "seed " << seed;
    verdicts += run.reachedVerdict() ? 1 : 0;
  }
  std::cout << "seeds 1 to " << runs() << ", " << verdicts << " runs came to a good verdict\n";
  EXPECT_GT(verdicts, runs() / 10) << "runs that never get anywhere prove nothing";
}

TEST(Campaign, NothingBreaksTheWirelessWizard) { playAll(Line::Wireless); }

TEST(Campaign, NothingBreaksTheVelarc2Wizard) { playAll(Line::Velarc2); }

/// A wizard that does not look at the unit behind the programming, in the place of the program's own.
struct BlindWizard {
  explicit BlindWizard(Story& story) : story_(story) {}

  static ProductParameters blind() {
    ProductParameters parameters = wirelessParameters();
    for (ProcessorRow& row : parameters.rows) {
      row.finalCheck = FinalCheck::None;
    }
    return parameters;
  }
  template <typename F>
  F& form(const char* name) {
    return static_cast<F&>(*story_.program->host().form(name));
  }

  Story& story_;
  ProductParameters parameters_ = blind();
  AutoWizardSetting setting_{story_.program->host(),
                             story_.files,
                             const_cast<RunState&>(story_.state()),
                             form<Form1>("Form1"),
                             form<FrmPort>("frmPort"),
                             form<FrmVersion>("frmVersion"),
                             form<FrmRecover>("frmRecover"),
                             form<FrmDBUG>("frmDBUG")};
  AutoWizard wizard_{
      setting_, {[] { return true; }, [](const std::string&) {}}, wirelessWindow(form<FrmAuto>("frmAuto")), parameters_};
};

TEST(Campaign, AWizardThatDoesNotCheckIsFoundOut) {
  for (std::uint32_t seed = 1; seed <= runs(); ++seed) {
    RandomRun run(Line::Wireless, seed);
    BlindWizard blind(run.story);
    run.play();
    if (run.fault().starts_with("a verdict that is not true")) {
      return;
    }
  }
  FAIL() << "no run has noticed";
}

}  // namespace
}  // namespace firmlane::test
