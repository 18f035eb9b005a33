#include <gmock/gmock.h>

#include "link_fixture.h"

namespace firmlane::test {
namespace {

const std::string kErased = "02 00 00 00 1F 02 21 3E";

class ReceivePathTest : public LinkTest {
 protected:
  ReceivePathTest() {
    state_.ProductCode = "VC";
    state_.FlashTarget = "DSPFlash";
    open();
  }
  std::string buffer() { return hex(receive_.RxBuffer); }
};

TEST_F(ReceivePathTest, FramesAreCutFromWhatArrives) {
  for (const auto& [what, pieces, phase, left] : {
           std::tuple{"in one piece", std::vector<std::string>{kErased}, 2, ""},
           {"with the second terminator and more behind it", {kErased + "3E 02 00 00 00"}, 2, ""},
           {"in pieces", {"02 00 00", "00 1F", "02 21", "3E"}, 2, ""},
           {"byte by byte", {"02", "00", "00", "00", "1F", "02", "21", "3E"}, 2, ""},
           {"codes 6 and 96 count alike", {"02 00 00 00 60 02 62 3E"}, 2, ""},
           {"a lone star", {"2A"}, 0, ""},
           {"a lone A while none is expected", {"41"}, 0, ""},
           {"noise in front, in one piece", {"41 42 " + kErased}, 0, ""},
           {"noise in front, as pieces", {"41 42", kErased}, 2, ""},
           {"data byte with the value of a terminator", {"02 00 00 00 1F 3E 5D 3E"}, 0, "02 00 00 00 1F 3E 5D 3E"},
           {"code without an entry", {"02 00 00 00 05 02 07 3E"}, 0, "02 00 00 00 05 02 07 3E"},
           {"code 110, beyond the table", {"02 00 00 00 6E 02 70 3E"}, 0, "02 00 00 00 6E 02 70 3E"},
           {"code 126, beyond the table", {"02 00 00 00 7E 02 00 3E"}, 0, "02 00 00 00 7E 02 00 3E"},
           {"no end yet", {"02 00 00 00 1F 02 21"}, 0, "02 00 00 00 1F 02 21"},
       }) {
    receive_.RxBuffer.clear();
    state_.FlashPhase = 0;
    for (const std::string& piece : pieces) {
      arrive(piece);
    }
    EXPECT_EQ(state_.FlashPhase, phase) << what;
    EXPECT_EQ(buffer(), hex(bytes(left))) << what;
  }
}

TEST_F(ReceivePathTest, ALineThatOnlyBringsTheStartOfAFrameDoesNotFillTheMemory) {
  Bytes endless(32'767, 0x11);
  endless.front() = 0x02;
  wire_.deliver(endless);
  world_.run(50 * kMillisecond);
  EXPECT_EQ(receive_.RxBuffer.size(), endless.size());
  arrive("11");
  EXPECT_EQ(buffer(), "");
  arrive(kErased);
  EXPECT_EQ(state_.FlashPhase, 2);
}

TEST_F(ReceivePathTest, DiagnosisShowsTheLastBytesAsDecimals) {
  const auto shown = [this] {
    const Form1& form = world_.form1;
    return form.msgcount.Text.get() + "/" + form.msglength.Text.get() + "/" + form.msgcode.Text.get() + "/" +
           form.msgtext.Text.get();
  };
  arrive("02 00 7F");
  arrive("1F 3E");
  EXPECT_EQ(shown(), "2/5/5/ 2 0 127 31 62");
  receive_.ExpectFrameEnd = true;
  receive_.RxBuffer.clear();
  arrive("41");
  EXPECT_EQ(shown(), "3/1/0/ 65");
  receive_.RxBuffer.clear();
  arrive("02 00 02 7F");
  EXPECT_EQ(shown(), "4/2/0/ 2 127") << "what is left";
}

TEST_F(ReceivePathTest, ABadChecksumCostsOneBoxThatHoldsEverything) {
  world_.screen.answerNext(MessageButton::OK, 5 * kSecond);
  world_.screen.onBox = [this](const MessageBox&) {
    EXPECT_EQ(world_.form1.txtstat.Text.get(), "Got a message, going to valid check it");
    world_.after(kSecond, [this] { wire_.deliver(bytes(kErased)); });
    world_.after(4 * kSecond, [this] { EXPECT_EQ(state_.FlashPhase, 0); });
  };
  arrive("02 00 00 00 1F 02 22 3E");
  ASSERT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(world_.screen.boxes()[0].text, "Communications Error");
  EXPECT_EQ(world_.form1.txtstat.Text.get(), "Message is invalid");
  world_.run(kSecond);
  EXPECT_EQ(state_.FlashPhase, 2) << "what came under the box is taken afterwards";
}

TEST_F(ReceivePathTest, CodesFrom128OnAreRefusedEvenInACompleteFrame) {
  world_.screen.answerOthers();
  arrive("02 00 00 00 85 02 07 3E");
  EXPECT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(state_.FlashPhase, 0);
}

TEST_F(ReceivePathTest, WhileShortAnswersAreExpectedOthersAreTrimmed) {
  receive_.ExpectFrameEnd = true;
  for (const auto& [what, pieces, acknowledged, phase, left] : {
           std::tuple{"a report", std::vector<std::string>{kErased}, false, 2, ""},
           {"an acknowledgement", {"41"}, true, 0, "41"},
           {"two of them", {"41", "41"}, true, 0, "41 41"},
           {"a star", {"2A"}, false, 0, ""},
           {"a frame with a displaced end", {"02 00 02 00 00 00 1F 02 21 3E"}, false, 2, ""},
           {"a frame behind a stray start byte", {"02 02 00 00 00 1F 02 21 3E"}, false, 2, ""},
           {"the beginning of a report is given up", {"02 00 00 00", "1F 02 21 3E"}, false, 0, ""},
       }) {
    receive_.RxBuffer.clear();
    state_.FlashPhase = 0;
    state_.MicAck = false;
    for (const std::string& piece : pieces) {
      arrive(piece);
    }
    EXPECT_EQ(state_.MicAck, acknowledged) << what;
    EXPECT_EQ(state_.FlashPhase, phase) << what;
    EXPECT_EQ(buffer(), left) << what;
  }
}

TEST_F(ReceivePathTest, SerialProgrammingTakesOneAnswerWhole) {
  world_.screen.answerOthers();
  state_.SerialStep = 4;
  arrive("02 00 00");  // cut short: invalid, but it was the one answer
  EXPECT_TRUE(state_.SerialAnswerTaken);
  EXPECT_EQ(world_.screen.boxes().size(), 1U);
  state_.FlashTarget.clear();
  arrive(report(39, "01 02 2C"));
  EXPECT_FALSE(state_.GotId);
  receive_.RxBuffer = bytes("02 01 02");
  state_.SerialAnswerTaken = false;
  arrive(report(39, "01 02 2C").substr(9));
  EXPECT_TRUE(state_.GotId);
  EXPECT_EQ(receive_.SerialReadBack, (1 * 128 + 2) * 128 + 44);
  EXPECT_EQ(receive_.RxEventCount, 0);
}

TEST_F(ReceivePathTest, OnlySeventeenBytesDuringASearchAreAUnit) {
  struct Case {
    const char* what;
    std::string answer;
    bool searching;
    int phase;
    bool found;
  };
  const std::string sixteen = "02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 4E";
  const auto endAt = [](std::size_t position) {
    Bytes answer = bytes("02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 4E 80");
    answer[position - 1] = 0x3E;
    return hex(answer);
  };
  for (const Case& c : {
           Case{"17 bytes", sixteen + "80", true, 0, true},
           {"16 bytes", sixteen, true, 0, false},
           {"18 bytes", sixteen + "80 80", true, 0, false},
           {"no search", sixteen + "80", false, 0, false},
           {"flash run", sixteen + "80", true, 1, false},
           {"a \">\" in the serial number", endAt(3), true, 0, true},
           {"a \">\" where a report would end", endAt(8), true, 0, true},
           {"a \">\" for the checksum", endAt(16), true, 0, true},
           {"17 bytes with a frame in front", kErased + "3E 00 00 00 00 00 00 00 00", true, 0, false},
       }) {
    receive_.RxBuffer.clear();
    state_.PortFound = false;
    state_.PortSearching = c.searching;
    state_.FlashPhase = static_cast<std::int16_t>(c.phase);
    arrive(c.answer);
    EXPECT_EQ(state_.PortFound, c.found) << c.what;
  }
}

TEST_F(ReceivePathTest, FrontStreamingLeavesABlankInTheBufferAlone) {
  receive_.RxBuffer = bytes("20");
  state_.FrontStreaming = true;
  arrive(kErased);
  EXPECT_EQ(buffer(), hex(bytes("20" + kErased)));
  EXPECT_EQ(state_.FlashPhase, 0);
  receive_.RxBuffer.clear();
  arrive(kErased);
  EXPECT_EQ(state_.FlashPhase, 2);
}

TEST_F(ReceivePathTest, ReportsThatArriveInsideAnEventAreEachTakenOnce) {
  receive_.WantAnswered = true;  // from here on events run inside the handler
  wire_.deliver(bytes("02 00 00 00 1F"));
  world_.queue.post([this] {
    EXPECT_EQ(receive_.RxEventCount, 0) << "the first event is still on its way";
    wire_.deliver(bytes("02 21 3E"));
    world_.queue.PumpEvents();
    EXPECT_EQ(state_.FlashPhase, 2);
    wire_.deliver(bytes(report(3)));
  });
  world_.run(50 * kMillisecond);
  EXPECT_EQ(state_.FlashPhase, 3);
  EXPECT_TRUE(receive_.FlashSucceeded);
  EXPECT_EQ(buffer(), "");
  EXPECT_TRUE(world_.screen.boxes().empty());
}

TEST_F(ReceivePathTest, AReportDuringTheShortDelayIsTakenInsideIt) {
  state_.FlashTarget = "FrontFlash";
  wire_.deliver(bytes(report(86)));
  world_.after(3 * kMillisecond, [this] { wire_.deliver(bytes(report(82))); });
  world_.queue.PumpEvents();
  EXPECT_TRUE(state_.FrontBlockOk);
  EXPECT_EQ(state_.FlashPhase, 3);
  EXPECT_FALSE(world_.form1.Delaytimer.enabled());
}

}  // namespace
}  // namespace firmlane::test
