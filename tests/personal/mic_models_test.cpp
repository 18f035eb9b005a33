#include <numeric>

#include "factory_world.h"

namespace firmlane::test {
namespace {

using MicModelsTest = FactoryTest;

constexpr const char* kWant = "02 00 00 00 50 01 51 3E 3E";

/// 15 blocks of the same lines, but for the model's name in block `other`.
std::string table(const std::string& model = "SM|20000|1.25|-84", const std::string& filter = "128|2.56|0", int other = 0,
                  const std::string& otherModel = "") {
  std::string text;
  for (int i = 1; i <= MicFile::kModels; ++i) {
    text += (i == other ? otherModel : model) + "\r\n";
    for (int j = 0; j < MicFile::kFilterLines; ++j) {
      text += filter + "\r\n";
    }
  }
  return text;
}

TEST_F(MicModelsTest, LinesBecomeTheGroupsThatAUnitTakes) {
  for (const auto& [text, name, filter] : {std::tuple{"SM|20000|1.25|-84\r", "53 4D 20 20 20 20", "01 1C 20 00 00 7D"},
                                           {"NONE|128|2.56|0\r", "00 00 00 00 00 00", "00 01 00 54 02 00"},
                                           {" NONE |0|0|44\r", "00 00 00 00 00 00", "00 00 00 00 00 00"},
                                           {"none|32767|327.67| +6\r", "6E 6F 6E 65 20 20", "01 7F 7F 5A FF 7F"},
                                           {"LONGNAME|1|.5|1\r", "4C 4F 4E 47 4E 41", "00 00 01 55 00 32"}}) {
    const MicFile::ModelLine line = MicFile(text).modelLine();
    EXPECT_EQ(hex(line.name), name) << text;
    EXPECT_EQ(hex(line.filter), filter) << text;
  }
}

TEST_F(MicModelsTest, FailureOfTheFileNamesLineAndField) {
  struct Case {
    std::string text;
    const char* message;
  };
  const Case cases[] = {
      {"", "5,line 1, Name: the \"|\" behind it is missing"},
      {"SM|1|1|1\r\n1|1\r\n", "5,line 2, Width: the \"|\" behind it is missing"},
      {"SM|1|1|1\r\n1|1|1", "5,line 2, Depth: the line end (CR LF) is missing"},
      {table("SM|1|1|1", "1|1|1", 2, "SM|x|1|1"), "13,line 7, Freq: \"x\" is not a whole number"},
      {table("SM|32768|1|1"), "6,line 1, Freq: 32768 is not from 0 to 32767"},
      {table("SM|1|1,5|1"), "13,line 1, Width: \"1,5\" is not a number"},
      {table("SM|1|-1|1"), "6,line 1, Width: not from 0 to 327.67"},
      {table("SM|1|1|-85"), "6,line 1, Depth: -85 is not from -84 to 32767"},
      {table("SM|1|1|1|9"), "13,line 1, Depth: \"1|9\" is not a whole number"},
      {std::string(32767, ' '), "5,line 1, Name: the \"|\" behind it is missing"},
      {std::string(32768, ' '), "6,micmodels.lmm is longer than 32767 bytes"},
  };
  world_.mainPort.setNumber(2);
  for (const Case& c : cases) {
    world_.directory.write("micmodels.lmm", c.text);
    unit_.startForMicrophones(999);
    world_.screen.answerNext(MessageButton::OK);
    form1_.btnMic.Click();
    EXPECT_EQ(world_.screen.boxes().back().text,
              std::string("Error encountered while trying to open file, please retry, ") + c.message);
    EXPECT_EQ(form1_.lblTop.Caption.get(), "The Mic Models were not sent to the receiver");
    EXPECT_EQ(page(), kGivenUp);
    EXPECT_FALSE(receivePath_.MicMode);
  }
}

TEST_F(MicModelsTest, TheWholeTableGoesOutGroupByGroup) {
  world_.directory.write("MicModels.LMM", table("SM|20000|1.25|-84", "128|2.56|0", 3, "NONE|1|1|1"));
  world_.after(5 * kSecond, [&] { unit_.startForMicrophones(105); });
  // What earlier runs have left, and a byte that the adapter still holds when the table begins.
  world_.mainPort.setSettings("57600,N,8,1");
  world_.mainPort.setHandshake(Handshake::XonXoff);
  receivePath_.ExpectFrameEnd = true;
  receivePath_.RxBuffer = bytes("02 02 02");
  wire_.latency = 16 * kMillisecond;
  std::vector<int> bar;
  world_.screen.onChange = [&](Control& control) {
    if (&control == &form1_.ProgressBar1 && form1_.ProgressBar1.Value > 0) {
      bar.push_back(form1_.ProgressBar1.Value);
    }
    if (&control == &form1_.txtstat) {
      wire_.deliver(bytes("41"));
    }
  };
  unit_.onMessage = [&] {
    EXPECT_EQ(page(), "ProgressBar1 lblResetSerial; port Watchdog");
    EXPECT_EQ(wire_.settings(), (LineSettings{9600, Handshake::None}));
    if (unit_.heard.size() > 1) {
      EXPECT_EQ(form1_.Watchdog.interval(), 500);
      EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Now sending Mic Models");
    }
  };
  form1_.btnMic.Click();
  EXPECT_TRUE(world_.screen.boxes().empty());
  ASSERT_EQ(unit_.heard.size(), 106U);
  unit_.onMessage = nullptr;
  EXPECT_EQ(unit_.heard[0], kWant);
  EXPECT_EQ(unit_.heard[1], "53 4D 20 20 20 20");
  EXPECT_EQ(unit_.heard[2], "01 1C 20 00 00 7D");
  EXPECT_EQ(unit_.heard[7], "00 01 00 54 02 00");
  EXPECT_EQ(unit_.heard[15], "00 00 00 00 00 00");
  EXPECT_EQ(unit_.heard[16], "00 00 01 55 00 64");
  EXPECT_EQ(unit_.heard[105], "00 01 00 54 02 00");
  EXPECT_TRUE(std::is_sorted(bar.begin(), bar.end()));
  EXPECT_EQ(bar.back(), 99);
  EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Finished sending new Mic Models to the receiver");
  EXPECT_EQ(page(), "ProgressBar1 lblResetSerial; Next Watchdog Timer1");
  EXPECT_TRUE(receivePath_.MicMode);
  EXPECT_FALSE(receivePath_.ExpectFrameEnd);
  EXPECT_TRUE(receivePath_.RxBuffer.empty());
  EXPECT_EQ(state_.WizardPage * 10 + state_.SerialStep, 75);
  EXPECT_EQ(form1_.Timer1.interval(), 100);
  EXPECT_EQ(world_.supervision.WatchdogLimit, 10);
  state_.ProgressPercent = 55;
  world_.run(kSecond);
  form1_.Command3.Click();
  EXPECT_EQ(form1_.ProgressBar1.Value + world_.supervision.BarValue + state_.ProgressPercent, 0);
  EXPECT_EQ(form1_.lblTop.Caption.get(), "Microphone Model Load Complete");
  EXPECT_FALSE(receivePath_.MicMode);
  EXPECT_EQ(page(), kReady);
}

TEST_F(MicModelsTest, AUnitThatStopsAcknowledgingEndsTheTransferAfterTenSeconds) {
  world_.directory.write("micmodels.lmm", table());
  unit_.startForMicrophones(50);
  world_.screen.answerNext(MessageButton::OK);
  form1_.btnMic.Click();
  EXPECT_EQ(unit_.heard.size(), 1 + 51U);
  EXPECT_EQ(world_.screen.boxes().at(0).text,
            "Error encountered while trying to open file, please retry, 8012,the receiver has stopped answering");
  EXPECT_EQ(world_.time.now() / kSecond, 12);
  EXPECT_EQ(page(), kGivenUp);
}

/// Whatever the unit is waited for: the user is told which adapter has gone when it goes, not after the unit's ten seconds.
TEST_F(MicModelsTest, APulledAdapterIsNamedAtOnce) {
  world_.directory.write("micmodels.lmm", table());
  struct Case {
    const char* awaited;
    bool microphones;
    std::size_t unanswered;  // message of the program, counted from 1
    const char* page;
  };
  for (const Case& c : {Case{"the number's answer", false, 1, kReady},
                        {"the preset's answer", false, 2, kReady},
                        {"the start", true, 0, kGivenUp},
                        {"an acknowledge", true, 52, kGivenUp}}) {
    SCOPED_TRACE(c.awaited);
    Micros pulledAt = 0;
    const auto pull = [&] {
      pulledAt = world_.time.now() + kSecond;
      world_.after(kSecond, [&] { wire_.vanish(); });
    };
    unit_.heard.clear();
    unit_.onMessage = [&] {
      const bool last = unit_.heard.size() == c.unanswered;
      unit_.deafTo = last ? c.unanswered : 0;
      if (last) {
        pull();
      }
    };
    Micros toldAt = 0;
    world_.screen.onBox = [&](const MessageBox&) { toldAt = world_.time.now(); };
    world_.screen.answerNext(MessageButton::OK);
    if (!c.microphones) {
      runSerial();
    } else {
      c.unanswered == 0 ? pull() : unit_.startForMicrophones(c.unanswered - 2);
      form1_.btnMic.Click();
    }
    const std::string told = world_.screen.boxes().back().text;
    EXPECT_NE(told.find("Serial port COM 2 has gone: its adapter was pulled"), std::string::npos) << told;
    EXPECT_EQ(told.find("open file"), std::string::npos) << told;
    EXPECT_EQ((toldAt - pulledAt) / kSecond, 0);
    EXPECT_EQ(page(), c.page);
    wire_.openFailure.reset();
    if (c.microphones) {
      next();
    }
  }
  EXPECT_EQ(world_.screen.boxes().size(), 4U);
}

TEST_F(MicModelsTest, AUnitThatDoesNotStartIsAskedForAgainForTwentySecondsEachTime) {
  world_.directory.write("micmodels.lmm", table());
  world_.screen.answerNext(MessageButton::Yes, 100 * kSecond);
  world_.screen.answerNext(MessageButton::No);
  world_.screen.onBox = [&](const MessageBox&) {
    EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Unable to connect to the receiver");
  };
  form1_.btnMic.Click();
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(world_.screen.boxes()[0].text, "Unable to connect to receiver, try again?");
  EXPECT_EQ(world_.time.now() / kSecond, 20 + 100 + 20 + 1);
  EXPECT_EQ(form1_.lblTop.Caption.get(), "Unable to connect to the receiver");
  EXPECT_EQ(page(), kGivenUp);

  world_.screen.onBox = nullptr;
  wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  world_.screen.answerNext(MessageButton::OK);
  form1_.btnMic.Click();
  EXPECT_EQ(world_.screen.boxes().back().text, "Error: The port is in use (#8005)");
  EXPECT_EQ(form1_.lblTop.Caption.get(), "The Mic Models were not sent to the receiver");
  EXPECT_EQ(page(), kGivenUp);
}

}  // namespace
}  // namespace firmlane::test
