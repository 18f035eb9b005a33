// Hundreds of random runs over each product line, and the proof that they can fail.
#include "campaign.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "wizard/auto/velarc2.h"
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

  static ProductParameters blind(Line line) {
    ProductParameters parameters = line == Line::Wireless ? wirelessParameters() : velarc2Parameters();
    for (ProcessorRow& row : parameters.rows) {
      row.finalCheck = FinalCheck::None;
    }
    return parameters;
  }
  template <typename F>
  F& form(const char* name) {
    return static_cast<F&>(*story_.program->host().form(name));
  }

  WizardWindow window() {
    return story_.line == Line::Wireless ? wirelessWindow(form<FrmAuto>("frmAuto"))
                                         : velarc2Window(form<FrmVRCAuto>("frmVRCAuto"));
  }

  Story& story_;
  ProductParameters parameters_ = blind(story_.line);
  const WizardInCharge inCharge_{story_.state(), form<Form1>("Form1"), form<FrmAuto>("frmAuto"), form<FrmVRCAuto>("frmVRCAuto")};
  AutoWizardSetting setting_{story_.program->host(),
                             inCharge_,
                             story_.files,
                             const_cast<RunState&>(story_.state()),
                             form<Form1>("Form1"),
                             form<FrmPort>("frmPort"),
                             form<FrmVersion>("frmVersion"),
                             form<FrmRecover>("frmRecover"),
                             form<FrmDBUG>("frmDBUG"),
                             story_.program->activity()};
  AutoWizard wizard_{setting_, {[] { return true; }, [](const std::string&) {}}, window(), parameters_};
};

/// Whether the runs notice a wizard that does not check.
bool foundOut(Line line) {
  for (std::uint32_t seed = 1; seed <= runs(); ++seed) {
    RandomRun run(line, seed);
    BlindWizard blind(run.story);
    run.play();
    if (run.fault().starts_with("a verdict that is not true")) {
      return true;
    }
  }
  return false;
}

TEST(Campaign, AWizardThatDoesNotCheckIsFoundOut) {
  EXPECT_TRUE(foundOut(Line::Wireless));
  EXPECT_TRUE(foundOut(Line::Velarc2));
}

}  // namespace
}  // namespace firmlane::test
