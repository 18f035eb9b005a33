// Hundreds of random runs over each product line, and the proof that they can fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "wanderer.h"
#include "wizard/auto/velarc2.h"
#include "wizard/auto/wireless.h"

namespace firmlane::test {
namespace {

/// How many runs of each kind; FIRMLANE_RUNS asks for more, for a night.
std::uint32_t runs() {
  const char* wanted = std::getenv("FIRMLANE_RUNS");
  return wanted == nullptr ? 100 : static_cast<std::uint32_t>(std::max(1, std::atoi(wanted)));
}

void playAll(Way way) {
  std::uint32_t ends = 0;
  for (std::uint32_t seed = 1; seed <= runs(); ++seed) {
    Wanderer run(way, seed);
    run.play();
    ASSERT_EQ(run.fault(), "") << "seed " << seed;
    ends += run.reachedEnd() ? 1 : 0;
  }
  std::cout << "seeds 1 to " << runs() << ", " << ends << " runs came to a good end\n";
  EXPECT_GT(ends, runs() / 10) << "runs that never get anywhere prove nothing";
}

TEST(Campaign, NothingBreaksTheWirelessWizard) { playAll(Way::Wireless); }

TEST(Campaign, NothingBreaksTheVelarc2Wizard) { playAll(Way::Velarc2); }

TEST(Campaign, NothingBreaksTheClassicPages) { playAll(Way::OlderVelarc); }

TEST(Campaign, NothingBreaksRemoteSoftware) { playAll(Way::Software); }

TEST(Campaign, NothingBreaksTheProductionLine) { playAll(Way::ProductionLine); }

/// A wizard that does not look at the unit behind the programming, in the place of the program's own.
struct BlindWizard {
  BlindWizard(Program& program, const Files& files, Way way) : program_(program), files_(files), way_(way) {}

  static ProductParameters blind(Way way) {
    ProductParameters parameters = way == Way::Wireless ? wirelessParameters() : velarc2Parameters();
    for (ProcessorRow& row : parameters.rows) {
      row.finalCheck = FinalCheck::None;
    }
    return parameters;
  }
  template <typename F>
  F& form(const char* name) {
    return static_cast<F&>(*program_.host().form(name));
  }

  Program& program_;
  const Files& files_;
  Way way_;
  ProductParameters parameters_ = blind(way_);
  WizardWindow window_ =
      way_ == Way::Wireless ? wirelessWindow(form<FrmAuto>("frmAuto")) : velarc2Window(form<FrmVRCAuto>("frmVRCAuto"));
  const WizardInCharge inCharge_{program_.state(), form<Form1>("Form1"), form<FrmAuto>("frmAuto"),
                                 form<FrmVRCAuto>("frmVRCAuto")};
  FirmwareSet set_{files_};
  AutoWizardSetting setting_{program_.host(),
                             inCharge_,
                             files_,
                             set_,
                             const_cast<RunState&>(program_.state()),
                             form<Form1>("Form1"),
                             form<FrmPort>("frmPort"),
                             form<FrmVersion>("frmVersion"),
                             form<FrmRecover>("frmRecover"),
                             form<FrmDBUG>("frmDBUG"),
                             program_.activity()};
  AutoWizard wizard_{setting_, {[] { return true; }, [](const std::string&) {}, [] {}, [] {}}, window_, parameters_};
};

/// A client that keeps to itself how long a body should be, so that nobody can compare.
class CarelessHttp : public HttpClient {
 public:
  explicit CarelessHttp(HttpClient& inner) : inner_(inner) {
    inner_.StateChanged = [this](int state) { StateChanged(state); };
  }
  std::string OpenURL(const std::string& url) override { return inner_.OpenURL(url); }
  void Execute(const std::string& url) override { inner_.Execute(url); }
  void Cancel() override { inner_.Cancel(); }
  [[nodiscard]] std::string GetHeader(const std::string&) const override { return {}; }
  Bytes GetChunk(std::size_t size) override { return inner_.GetChunk(size); }
  [[nodiscard]] int statusCode() const override { return inner_.statusCode(); }
  [[nodiscard]] std::string statusText() const override { return inner_.statusText(); }
  [[nodiscard]] std::string errorDescription() const override { return inner_.errorDescription(); }
  [[nodiscard]] int errorNumber() const override { return inner_.errorNumber(); }

 private:
  HttpClient& inner_;
};

/// A driver that throws nothing away: what waited when a port was opened comes after all.
class HoardingDriver : public SerialDriver {
 public:
  explicit HoardingDriver(SerialDriver& inner) : inner_(inner) {
    inner_.received = [this](ByteSpan bytes) { received(bytes); };
    inner_.lost = [this](const Failure& failure) { lost(failure); };
  }
  void open(int number, const LineSettings& settings) override { inner_.open(number, settings); }
  void configure(const LineSettings& settings) override { inner_.configure(settings); }
  void close() override { inner_.close(); }
  void send(ByteSpan bytes) override { inner_.send(bytes); }
  [[nodiscard]] std::size_t unsent() const override { return inner_.unsent(); }
  void fetch() override {}
  void discard() override {}

 private:
  SerialDriver& inner_;
};

/// Whether the runs notice what `spoil` has done to the program's ground.
bool noticed(Way way, const std::string& fault, const std::function<void(Wanderer&)>& spoil) {
  for (std::uint32_t seed = 1; seed <= runs(); ++seed) {
    Wanderer run(way, seed);
    spoil(run);
    run.play();
    if (run.fault().starts_with(fault)) {
      return true;
    }
  }
  return false;
}

TEST(Campaign, AWizardThatDoesNotCheckIsFoundOut) {
  std::unique_ptr<BlindWizard> blind;
  for (const Way way : {Way::Wireless, Way::Velarc2}) {
    EXPECT_TRUE(noticed(way, "a verdict that is not true", [&](Wanderer& run) {
      run.onProgram = [&, way](Program& program) { blind = std::make_unique<BlindWizard>(program, run.files, way); };
    }));
  }
}

TEST(Campaign, ADownloadThatDoesNotCompareIsFoundOut) {
  std::unique_ptr<CarelessHttp> careless;
  for (const Way way : {Way::OlderVelarc, Way::Software}) {
    EXPECT_TRUE(noticed(way, "half written", [&](Wanderer& run) {
      careless = std::make_unique<CarelessHttp>(run.http);
      run.httpInstead = careless.get();
    }));
  }
}

TEST(Campaign, ALineThatKeepsOldBytesIsFoundOut) {
  std::unique_ptr<HoardingDriver> hoarding;
  EXPECT_TRUE(noticed(Way::ProductionLine, "a unit that runs is told to program", [&](Wanderer& run) {
    hoarding = std::make_unique<HoardingDriver>(run.mainDriver);
    run.driverInstead = hoarding.get();
  }));
}

TEST(Campaign, ACounterThatCountsBehindTheNumberIsFoundOut) {
  EXPECT_TRUE(noticed(Way::ProductionLine, "two units", [](Wanderer& run) { run.countsLate = true; }));
}

}  // namespace
}  // namespace firmlane::test
