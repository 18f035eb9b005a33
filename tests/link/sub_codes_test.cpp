// What each report of a unit does, row by row.
#include <algorithm>

#include "link_fixture.h"

namespace firmlane::test {
namespace {

struct Row {
  int subCode;
  const char* product;
  const char* target;
  std::string effect;
};

const std::string kDsp = "sent 02 00 00 00 1E 01 1F 3E 3E, answered";
const std::string kHub = "sent 02 00 00 00 1E 21 3F 3E 3E, answered";
const std::string kErased = "phase 2";
const std::string kGood = "phase 3 good";
const std::string kBad = "phase 3 failed";
const std::string kNothing;

const Row kRows[] = {
    {1, "VC", "", kDsp + ", acked"},
    {1, "", "RF1Flash", kDsp + ", acked"},
    {1, "WS", "DSPFlash", kDsp},
    {1, "WS", "RF1Flash", kNothing},
    {1, "WS mic", "RF1Flash", "sent 02 00 00 00 50 01 51 3E 3E, answered"},
    {1, "WS mic", "DSPFlash", "sent 02 00 00 00 50 01 51 3E 3E, answered"},
    {1, "VC mic", "DSPFlash", kDsp + ", acked"},
    {2, "VC", "OldVRCFlash", kErased},
    {2, "WS", "DSPFlash", kErased},
    {2, "WS", "RF1Flash", kNothing},
    {3, "VC", "OldVRCFlash", kGood},
    {3, "WS", "DSPFlash", kGood},
    {3, "WS", "RF1Flash", kNothing},
    {4, "VC", "OldVRCFlash", kBad},
    {4, "WS", "DSPFlash", kBad},
    {4, "WS", "RF1Flash", kNothing},
    {5, "VC", "DSPFlash", kNothing},
    {6, "VC", "DSPFlash", kDsp + ", second generation"},
    {6, "VC", "NewHubFlash", "second generation"},
    {7, "WS", "RF1Flash", kErased},
    {8, "WS", "RF1Flash", kGood},
    {9, "VC", "RF1Flash", kBad},
    {9, "WS", "DSPFlash", kBad},
    {9, "WS", "RF1Flash", kNothing},
    {10, "WS", "", "preset"},
    {32, "WS", "NewHubFlash", kHub + ", asked at wireless"},
    {32, "WS", "DSPFlash", kNothing},
    {33, "WS", "NewHubFlash", kErased},
    {33, "WS", "DSPFlash", kNothing},
    {34, "WS", "NewHubFlash", kGood},
    {34, "WS", "DSPFlash", kNothing},
    {35, "WS", "NewHubFlash", kBad},
    {35, "WS", "DSPFlash", kNothing},
    {36, "WS", "NewHubFlash", kNothing},
    {37, "VC", "NewHubFlash", kHub + ", second generation, asked at Velarc"},
    {37, "VC", "DSPFlash", "second generation"},
    {38, "VC", "NewHubFlash", kErased},
    {38, "VC", "DSPFlash", kNothing},
    {39, "VC", "NewHubFlash", kGood},
    {39, "WS", "RF1Flash", "serial 16684"},
    {40, "VC", "NewHubFlash", kBad},
    {40, "VC", "DSPFlash", kNothing},
    {48, "WS", "RF1Flash", "sent 02 00 00 00 1E 30 4E 3E 3E, answered"},
    {48, "WS", "RF2Flash", kNothing},
    {49, "WS", "RF1Flash", kErased},
    {50, "WS", "RF1Flash", kGood},
    {51, "WS", "RF1Flash", kBad},
    {51, "WS", "RF2Flash", kNothing},
    {53, "VC", "Front1Flash", "sent 02 00 00 00 1E 35 53 3E 3E, answered"},
    {53, "VC", "Front2Flash", kNothing},
    {54, "VC", "Front1Flash", kErased},
    {55, "VC", "Front1Flash", kGood},
    {56, "VC", "Front1Flash", kBad},
    {56, "VC", "Front2Flash", kNothing},
    {58, "VC", "Front2Flash", "sent 02 00 00 00 1E 3A 58 3E 3E, answered"},
    {58, "VC", "Front1Flash", kNothing},
    {59, "VC", "Front2Flash", kErased},
    {60, "VC", "Front2Flash", kGood},
    {61, "VC", "Front2Flash", kBad},
    {61, "VC", "Front1Flash", kNothing},
    {64, "WS", "RF2Flash", "sent 02 00 00 00 1E 40 5E 3E 3E, answered"},
    {64, "WS", "RF1Flash", kNothing},
    {65, "WS", "RF2Flash", kErased},
    {66, "WS", "RF2Flash", kGood},
    {67, "WS", "RF2Flash", kBad},
    {67, "WS", "RF1Flash", kNothing},
    {80, "WS", "FrontFlash", "sent 02 00 00 00 1E 50 6E 3E 3E, answered"},
    {80, "VC", "Front1Flash", kNothing},
    {81, "WS", "FrontFlash", kErased},
    {81, "VC", "Front1Flash", kNothing},
    {82, "WS", "FrontFlash", kGood},
    {82, "VC", "Front1Flash", kGood},
    {82, "VC", "Front2Flash", kGood},
    {82, "WS", "DSPFlash", kNothing},
    {83, "WS", "FrontFlash", kBad},
    {83, "VC", "Front1Flash", kBad},
    {83, "VC", "Front2Flash", kBad},
    {83, "WS", "DSPFlash", kNothing},
    {86, "WS", "FrontFlash", "block, 10 ms"},
    {86, "VC", "Front1Flash", "block, 10 ms"},
    {86, "VC", "Front2Flash", "block, 10 ms"},
    {86, "WS", "DSPFlash", kNothing},
    {87, "WS", "FrontFlash", "vectors, 10 ms"},
    {87, "VC", "Front1Flash", "vectors, 10 ms"},
    {87, "VC", "Front2Flash", "vectors, 10 ms"},
    {87, "WS", "DSPFlash", kNothing},
};

class SubCodeTest : public LinkTest, public testing::WithParamInterface<Row> {
 protected:
  std::string effects() {
    std::string text;
    const auto note = [&text](bool happened, const std::string& what) {
      text += happened ? (text.empty() ? "" : ", ") + what : "";
    };
    note(!wire_.sent().empty(), "sent " + hex(wire_.sent()));
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
    note(state_.DelayDone, std::to_string(delayed_ / kMillisecond) + " ms");
    return text;
  }

  Micros delayed_ = 0;
};

TEST_P(SubCodeTest, DoesWhatItsRowSays) {
  const Row& row = GetParam();
  const std::string product = row.product;
  state_.ProductCode = product.substr(0, 2);
  receive_.MicMode = product.ends_with("mic");
  state_.FlashTarget = row.target;
  state_.FlashPhase = 1;
  receive_.FlashSucceeded = row.effect != kGood;
  open();
  wire_.deliver(bytes(report(row.subCode, "01 02 2C")));
  const Micros start = world_.time.now();
  world_.queue.PumpEvents();
  delayed_ = world_.time.now() - start;
  EXPECT_EQ(effects(), row.effect);
  EXPECT_EQ(hex(receive_.RxBuffer), "");
}

std::string rowName(const testing::TestParamInfo<Row>& row) {
  std::string name = std::to_string(row.param.subCode) + "_" + row.param.product + "_" + row.param.target;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Rows, SubCodeTest, testing::ValuesIn(kRows), rowName);

}  // namespace
}  // namespace firmlane::test
