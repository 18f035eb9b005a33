// What each report of a unit does, for every flash target.
#include <algorithm>
#include <set>

#include "link_fixture.h"

namespace firmlane::test {
namespace {

const std::vector<std::string> kTargets = {"",           "DSPFlash",    "NewHubFlash", "RF1Flash",   "RF2Flash",
                                           "FrontFlash", "Front1Flash", "Front2Flash", "OldVRCFlash"};

struct Row {
  int subCode;
  std::string product;
  std::string targets;  // "*" for all
  std::string effect;
  std::string otherwise;  // with any other target
};

std::string answered(const std::string& frame) { return "sent 02 00 00 00 " + frame + " 3E 3E, answered"; }

const std::string kDsp = answered("1E 01 1F");
const std::string kHub = answered("1E 21 3F");
const std::string kMicrophones = answered("50 01 51");
const std::string kFronts = "FrontFlash Front1Flash Front2Flash";

std::vector<Row> rows() {
  std::vector<Row> all = {
      {1, "VC", "*", kDsp + ", acked"},
      {1, "", "*", kDsp + ", acked"},
      {1, "VC mic", "*", kDsp + ", acked"},
      {1, "WS", "DSPFlash", kDsp},
      {1, "WS mic", "*", kMicrophones},
      {6, "VC", "DSPFlash", kDsp + ", second generation", "second generation"},
      {7, "WS", "*", "phase 2"},
      {8, "WS", "*", "phase 3 good"},
      {9, "VC", "*", "phase 3 failed"},
      {9, "WS", "DSPFlash", "phase 3 failed"},
      {10, "WS", "*", "preset"},
      {32, "WS", "NewHubFlash", kHub + ", asked at wireless"},
      {37, "VC", "NewHubFlash", kHub + ", second generation, asked at Velarc", "second generation"},
      {48, "WS", "RF1Flash", answered("1E 30 4E")},
      {53, "VC", "Front1Flash", answered("1E 35 53")},
      {58, "VC", "Front2Flash", answered("1E 3A 58")},
      {64, "WS", "RF2Flash", answered("1E 40 5E")},
      {80, "WS", "FrontFlash", answered("1E 50 6E")},
      {81, "WS", "FrontFlash", "phase 2"},
      {82, "WS", kFronts, "phase 3 good"},
      {83, "WS", kFronts, "phase 3 failed"},
      {86, "WS", kFronts, "block, 10 ms"},
      {87, "WS", kFronts, "vectors, 10 ms"},
  };
  const auto addReports = [&all](int base, const char* product, const char* targets) {
    all.push_back({base + 1, product, targets, "phase 2"});
    all.push_back({base + 2, product, targets, "phase 3 good"});
    all.push_back({base + 3, product, targets, "phase 3 failed"});
  };
  addReports(1, "VC", "*");
  addReports(1, "WS", "DSPFlash");
  addReports(32, "WS", "NewHubFlash");
  addReports(37, "VC", "NewHubFlash");
  addReports(48, "WS", "RF1Flash");
  addReports(53, "VC", "Front1Flash");
  addReports(58, "VC", "Front2Flash");
  addReports(64, "WS", "RF2Flash");
  std::ranges::find(all, 39, &Row::subCode)->otherwise = "serial 16684";
  return all;
}

class SubCodeTest : public LinkTest {
 protected:
  SubCodeTest() { open(); }

  /// Everything that the report does to a fresh state.
  std::string effects(int subCode, const std::string& product, const std::string& target, const std::string& expected) {
    state_ = RunState{};
    state_.ProductCode = product.substr(0, 2);
    state_.FlashTarget = target;
    state_.FlashPhase = 1;
    receive_.MicMode = product.ends_with("mic");
    receive_.WantAnswered = receive_.PresetLoaded = false;
    receive_.FlashSucceeded = expected != "phase 3 good";
    world_.frmAuto.txtQtime.Text = "";
    world_.frmVRCAuto.txtQtime.Text = "";
    const auto before = static_cast<std::ptrdiff_t>(wire_.sent().size());
    wire_.deliver(bytes(report(subCode, "01 02 2C")));
    const Micros start = world_.time.now();
    world_.queue.PumpEvents();
    const Micros delayed = world_.time.now() - start;
    return text(Bytes(wire_.sent().begin() + before, wire_.sent().end()), delayed);
  }

 private:
  std::string text(const Bytes& sent, Micros delayed) {
    std::string text;
    const auto note = [&text](bool happened, const std::string& what) {
      text += happened ? (text.empty() ? "" : ", ") + what : "";
    };
    note(!sent.empty(), "sent " + hex(sent));
    note(receive_.WantAnswered, "answered");
    note(state_.WantAcked, "acked");
    note(state_.UnitIsVrc2, "second generation");
    note(state_.FlashPhase == 2, "phase 2");
    note(state_.FlashPhase == 3, receive_.FlashSucceeded ? "phase 3 good" : "phase 3 failed");
    note(receive_.PresetLoaded, "preset");
    note(state_.GotId, "serial " + std::to_string(receive_.SerialReadBack));
    note(state_.FrontBlockOk, "block");
    note(state_.FrontVectorAsked, "vectors");
    note(!world_.frmAuto.txtQtime.Text.get().empty(), "asked at wireless");
    note(!world_.frmVRCAuto.txtQtime.Text.get().empty(), "asked at Velarc");
    note(state_.DelayDone, std::to_string(delayed / kMillisecond) + " ms");
    return text;
  }
};

TEST_F(SubCodeTest, EachReportDoesWhatItsRowSaysAndNothingElse) {
  std::set<int> known;
  for (const Row& row : rows()) {
    known.insert(row.subCode);
    for (const std::string& target : kTargets) {
      const bool applies =
          row.targets == "*" || (!target.empty() && (" " + row.targets + " ").find(" " + target + " ") != std::string::npos);
      const std::string& expected = applies ? row.effect : row.otherwise;
      EXPECT_EQ(effects(row.subCode, row.product, target, expected), expected)
          << row.subCode << " " << row.product << " " << target;
    }
  }
  for (int subCode = 0; subCode < 128; ++subCode) {
    if (subCode != 0x3E && !known.contains(subCode)) {
      EXPECT_EQ(effects(subCode, "VC", "DSPFlash", ""), "") << subCode;
    }
  }
}

}  // namespace
}  // namespace firmlane::test
