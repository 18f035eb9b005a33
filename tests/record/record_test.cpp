#include "record/record.h"

#include <gtest/gtest.h>

#include "record/record_text.h"
#include "record/recorded_http.h"
#include "world.h"

namespace firmlane::test {
namespace {

/// The world with everything that reports to a record.
struct RecordTest : Ground, testing::Test {
  RecordTest() {
    screen.press = [this](MessageButton button) { host.answer(button); };
  }
  /// The entries so far without their times, then forgets nothing.
  std::string entries() {
    std::string text = record.text("");
    std::string result;
    std::istringstream lines(text.substr(text.find('\n') + 1));
    for (std::string line; std::getline(lines, line) && line != Record::kEnd;) {
      result += line.substr(line.find(' ') + 1) + "\n";
    }
    return result;
  }

  Record record{time};
  Files recordedFiles{directory.path(), record};
  FormHost host{queue, screen, record};
  SerialPort port{queue, mainDriver, record};
  RecordedHttp web{http, record};
};

TEST_F(RecordTest, BytesBothWaysStandInTheirOrderAndALongStreamByItsEndsAndSum) {
  VirtualWire& wire = wires.add(3);
  port.setNumber(3);
  port.Open();
  port.Write({0x02, 0x00});
  port.Write({0x1F});
  wire.deliver(Bytes{0x3E, 0x3E});
  port.setSettings("57600,N,8,1");
  for (int i = 0; i < 200; ++i) {
    port.Write({0xAA});
  }
  run(kSecond);
  port.Write(Bytes(100, 0xFF));
  wire.vanish();
  EXPECT_EQ(record.cause(), "Serial port COM 3 has gone: its adapter was pulled (#8020)");
  EXPECT_THROW(port.Open(), Failure);
  EXPECT_EQ(entries(),
            "open 3 9600 none\n"
            "sent 3: 02 00 1F\n"
            "heard 3: 3E 3E\n"
            "set 3 57600 none\n"
            "sent 3: 200 bytes AA*16 .. AA*16 sum " +
                sumText(recordSum(Bytes(200, 0xAA))) +
                " in 0.027516\n"
                "sent 3: FF*100\n"
                "lost 3 #8020 \"Serial port COM 3 has gone: its adapter was pulled\"\n"
                "refused 3 #53 \"No such port: the adapter is not plugged in\"\n");
  EXPECT_EQ(sumText(recordSum(bytesOf("foobar"))), "85944171F73967E8") << "FNV-1a";
  wire.openFailure.reset();
  port.setHandshake(Handshake::Rts);
  port.Open();
  wire.holdBack(true);
  port.Write(Bytes(100, 0x55));
  after(kSecond, [&] { wire.vanish(); });
  EXPECT_THROW(port.Write({0x77}), Failure);
  EXPECT_EQ(entries().find("77"), std::string::npos) << "it has not gone out";
}

TEST_F(RecordTest, ALineThatNeverStopsDoesNotPushOutWhatWasBefore) {
  VirtualWire& wire = wires.add(1);
  port.Open();
  for (int i = 0; i < 4000; ++i) {
    wire.deliver(Bytes{1, 2, 3, static_cast<std::uint8_t>(i), 5, 6, 7, 8, 9, 10});
    run(20 * kMillisecond);
  }
  const std::string text = record.text("");
  EXPECT_LT(text.size(), 40'000U);
  EXPECT_NE(text.find("open 1 9600 none"), std::string::npos);
  EXPECT_NE(text.find("bytes 01 02 03"), std::string::npos);
}

TEST_F(RecordTest, WordsStandAsTheUserSawThem) {
  struct Sheet : Form {
    explicit Sheet(FormHost& formHost) : Form(formHost, "Sheet", "") {
      hidden.hiddenAtStart();
      frame.hiddenAtStart();
    }
    Label text{*this, "text", "Welcome"};
    Label hidden{*this, "hidden", "nothing to see"};
    Frame frame{*this, "frame", ""};
    Label inside{*this, "inside", "inside", &frame};
    Label lblProgressInfo{*this, "lblProgressInfo", "Programmed 5 bytes (1%)"};
    ListBox list{*this, "list"};
    OutcomeLabel outcome{*this, "lblOutcome"};
    TextBox txtEmail{*this, "txtEmail"};
    TextBox number{*this, "number"};
    CommandButton next{*this, "next", "Next >>"};
  } sheet(host);
  sheet.text.Caption = "not on screen yet";
  sheet.Load();
  sheet.Show();
  sheet.text.Caption = "one\rtwo \xE9";
  sheet.text.Caption = "one\rtwo \xE9";
  sheet.frame.Show();
  sheet.list.AddItem("5.0");
  sheet.text.Hide();
  host.click(sheet.next);
  host.type(sheet.txtEmail, "ann");
  host.type(sheet.txtEmail, "ann@mail.example");
  host.type(sheet.number, "1500");
  run(kSecond);
  sheet.outcome.tell(OutcomeKind::Failure, "It has failed");
  screen.answerNext(MessageButton::Cancel);
  host.showMessageBox({.text = "Not a web address: http://r/FLusers.asp?e=ann@mail.example,Ann",
                       .icon = MessageIcon::Critical,
                       .buttons = MessageButtons::OKCancel});
  sheet.Hide();
  EXPECT_EQ(entries(),
            "show Sheet\n"
            "says Sheet.text \"Welcome\"\n"
            "says Sheet.text \"one\\rtwo \\xE9\"\n"
            "says Sheet.inside \"inside\"\n"
            "lists Sheet.list \"5.0\"\n"
            "gone Sheet.text\n"
            "click Sheet.next\n"
            "type Sheet.txtEmail (not kept)\n"
            "type Sheet.number \"1500\"\n"
            "says Sheet.lblOutcome failure \"It has failed\"\n"
            "box critical \"Tolvex Firmlane\" \"Not a web address: http://r/FLusers.asp?e=(not kept)\" OK Cancel\n"
            "answer Cancel\n"
            "hide Sheet\n");
  EXPECT_EQ(record.failure().find("ann"), std::string::npos);
}

TEST_F(RecordTest, RequestsStandWithWhatCameAndNeverWithTheContactForm) {
  http.answer("http://s/list", "SYSTEM\r\n");
  http.answer("http://s/image", std::string(9000, 'x'));
  http.answer("http://s/FLusers.asp?e=ann@mail.example,Ann Marie,Lee,Velarc", "1");
  web.OpenURL("http://s/list");
  web.OpenURL("http://s/FLusers.asp?e=ann@mail.example,Ann Marie,Lee,Velarc");
  EXPECT_THROW(web.OpenURL("http://s/none"), Failure);
  web.Execute("http://s/image");
  run(kSecond);
  while (!web.GetChunk(512).empty()) {
  }
  web.Execute("http://s/image");
  web.Cancel();
  EXPECT_EQ(entries(),
            "get \"http://s/list\"\n"
            "got 200 length \"8\"\n"
            "body \"SYSTEM\\r\\n\"\n"
            "get \"http://s/FLusers.asp?e=(not kept)\"\n"
            "got 200 length \"1\"\n"
            "body \"1\"\n"
            "get \"http://s/none\"\n"
            "failed #12029 \"Cannot connect to the server\"\n"
            "get \"http://s/image\"\n"
            "got 200 length \"9000\"\n"
            "body 9000 bytes 78*16 .. 78*16 sum " +
                sumText(recordSum(Bytes(9000, 'x'))) +
                " in 0.000000\n"
                "get \"http://s/image\"\n"
                "dropped\n");
}

/// A server that is told who registers may say so, or send the request on to where it is no longer known for what it is.
TEST_F(RecordTest, WhatAServerSaysOfTheContactFormIsNotKeptEither) {
  struct ContactSheet : Form {
    explicit ContactSheet(FormHost& formHost) : Form(formHost, "Sheet", "") {}
    TextBox txtEmail{*this, "txtEmail"};
  } sheet(host);
  sheet.Show();
  host.type(sheet.txtEmail, "ann@mail.example");
  run(kSecond);
  const std::string request = "http://s/FLusers.asp?e=ann@mail.example,Ann,Lee,Velarc";
  for (const char* answer : {"1", "1 Thank you, Ann Lee", "<html>ann@mail.example is known</html>"}) {
    http.answer(request, answer);
    web.OpenURL(request);
  }
  record.requestFailed(Failure(204, "Error transferring http://o/new?mail=ann%40mail.example,Ann Marie - server replied: No"));
  screen.answerNext(MessageButton::OK);
  host.showMessageBox({.text = "Not taken: http://o/new?mail=ann@mail.example,Ann", .icon = MessageIcon::Critical});
  const std::string text = record.text("cause: " + record.cause() + "\nfailure: " + record.failure() + "\n");
  EXPECT_EQ(text.find("ann"), std::string::npos) << text;
  EXPECT_EQ(text.find("Ann"), std::string::npos) << text;
  for (const char* kept :
       {"body \"1\"\n", "body \"1(not kept)\"\n", "body \"(not kept)\"\n", "failed #204 \"Error transferring (not kept)\"\n",
        "\"Not taken: (not kept)\" OK\n", "failure: Not taken: (not kept)\n"}) {
    EXPECT_NE(text.find(kept), std::string::npos) << kept << text;
  }
}

TEST_F(RecordTest, AFileStandsOnceAsLongAsItStaysTheSame) {
  const std::string path = recordedFiles.path("wls.bin");
  directory.write("wls.bin", Bytes(5, 7));
  static_cast<void>(recordedFiles.path("WLS.BIN"));
  static_cast<void>(recordedFiles.path("wls.bin"));
  directory.write("wls.bin", Bytes(500, 7));
  static_cast<void>(recordedFiles.path("wls.bin"));
  EXPECT_EQ(entries(), "file \"wls.bin\" missing\nfile \"wls.bin\": 07*5\nfile \"wls.bin\" 500 bytes sum " +
                           sumText(recordSum(Bytes(500, 7))) + "\n");
}

TEST(RecordRingTest, TheOldestLinesMakeRoomAndAreCounted) {
  VirtualTime time;
  Record record(time, 100);
  for (int i = 0; i < 50; ++i) {
    record.doing("step " + std::to_string(i));
  }
  EXPECT_EQ(record.text(""),
            "Firmlane record 1\nmissing: 46 older entries\n0.000000 doing \"step 46\"\n0.000000 doing \"step 47\"\n"
            "0.000000 doing \"step 48\"\n0.000000 doing \"step 49\"\nend of record\n");
  record.doing(std::string(200, 'x'));
  EXPECT_NE(record.text("").find("missing: 47"), std::string::npos);
}

}  // namespace
}  // namespace firmlane::test
