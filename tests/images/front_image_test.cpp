#include <gtest/gtest.h>

#include "images/digit_text.h"
#include "images/front_image_loader.h"
#include "world.h"

namespace firmlane::test {
namespace {

constexpr const char* kHead = "S00600004844521B\r\n";
constexpr const char* kEnd = "S9030000FC\r\n";

class FrontImageTest : public testing::Test {
 protected:
  FrontImageTest() {
    world_.time.setEnd(kSecond * 3600);
    world_.screen.answerOthers();
    state_.ProductCode = "VC";
    state_.FrontImage = "48484848";
    state_.FrontCodeBytes = 2;
  }

  bool load(const std::string& records) {
    world_.directory.write("VRC2FNT.S19", records);
    return loader_.LoadFrontImage();
  }
  [[nodiscard]] std::string lastBox() const {
    return world_.screen.boxes().empty() ? "no box" : world_.screen.boxes().back().text;
  }

  World world_;
  RunState& state_ = world_.state;
  DebugNotes notes_{state_, world_.frmDBUG};
  FrontImageLoader loader_{world_.host, world_.files, notes_, state_, world_.form1};
};

TEST_F(FrontImageTest, HexadecimalTextsAndDigitGroups) {
  for (const auto& [text, value] :
       {std::pair{"3F", 0x3F}, {"aB", 0xAB}, {"Cd", 0xCD}, {"eF", 0xEF}, {"09", 9}, {"G1", 1}, {"F", 0xF0}, {"", 0}}) {
    EXPECT_EQ(H2D(text), value) << text;
  }
  for (const auto& [text, value] :
       {std::pair{"48", 0}, {"57", 9}, {"65", 10}, {"70", 15}, {"58", 0}, {"97", 0}, {"4", 0}, {"", 0}}) {
    EXPECT_EQ(Asc2Num(text), value) << text;
  }
}

TEST_F(FrontImageTest, AConvertedFileGivesItsLastField) {
  for (const char* content :
       {"51705170", "51705170\r\n", "51705170\n", "48,51705170", "\"51705170\"\r\n", "x\r\n\"51705170\","}) {
    state_.FrontImage = "48484848";
    state_.FrontCodeBytes = 77;
    world_.directory.write("fntlcdc.S19", content);
    EXPECT_TRUE(loader_.ConvertFront()) << content;
    EXPECT_EQ(state_.FrontImage, "51705170") << content;
    EXPECT_EQ(state_.FrontCodeBytes, 2);
  }
  EXPECT_TRUE(world_.screen.boxes().empty());
}

TEST_F(FrontImageTest, AConvertedFileOfAnotherShapeIsToldAndLeavesTheImage) {
  std::string tooLong;
  for (int i = 0; i < 8192; ++i) {
    tooLong += "4848";
  }
  const std::pair<std::string, std::string> cases[] = {
      {"", "it is empty"},
      {"51705170\r\n\r\n", "it is empty"},
      {"517051", "its last byte is cut short"},
      {"517A", "no hexadecimal digit at position 3"},
      {"S1", "its last byte is cut short"},
      {"58584848", "no hexadecimal digit at position 1"},
      {"\"5170", "a quote is not closed"},
      {"\"5170\"5170", "there is something behind a quote"},
      {"\"5170\"5", "there is something behind a quote"},
      {std::string(32767, '4'), "its last byte is cut short"},
      {tooLong, "it is too long"},
  };
  state_.FrontCodeBytes = 77;
  for (const auto& [content, why] : cases) {
    world_.directory.write("FNTLCDc.s19", content);
    EXPECT_FALSE(loader_.ConvertFront()) << why;
    EXPECT_EQ(lastBox(), "Error opening or reading S-Record file!, FNTLCDc.s19 is not a front panel image: " + why + ", 13");
    EXPECT_EQ(state_.FrontImage, "48484848") << why;
    EXPECT_EQ(state_.FrontCodeBytes, 2) << "of an empty file it follows the image, of others it stays";
  }
}

TEST_F(FrontImageTest, TheImageOfAVelarcDoesNotServeAReceiver) {
  ASSERT_TRUE(load(std::string(kHead) + "S10400003FBC\r\n" + kEnd));
  EXPECT_FALSE(loader_.ConvertFront());
  EXPECT_EQ(state_.FrontImage, "");
  for (const auto& [content, good] : {std::pair{"51705170", true}, {"5", false}}) {
    world_.directory.write("FNTLCDc.s19", std::string(content));
    EXPECT_EQ(loader_.ConvertFront(), good);
    EXPECT_EQ(state_.FrontImage, "51705170") << "a receiver's own image stays";
  }
}

TEST_F(FrontImageTest, AMissingConvertedFileIsToldAndNotedInTheDebugView) {
  const std::string path = world_.files.path("FNTLCDc.s19");
  EXPECT_FALSE(loader_.ConvertFront());
  EXPECT_EQ(lastBox(), "Error opening or reading S-Record file!, File not found: " + path + ", 53");
  EXPECT_EQ(world_.frmDBUG.lblErrors.Caption.get(), "");
  state_.DebugView = true;
  std::string stages;
  world_.screen.onChange = [&](Control& control) {
    if (&control == &world_.frmDBUG.lblErrors) {
      stages += world_.frmDBUG.lblStage.Caption.get() + "/" + world_.frmDBUG.lblBytes.Caption.get() + "/" +
                world_.frmDBUG.lblErrors.Caption.get() + "|";
    }
  };
  loader_.ConvertFront();
  EXPECT_TRUE(stages.starts_with("Opening Firmware File/0/Opening pre-converted firmware file|Unable")) << stages;
  EXPECT_EQ(world_.frmDBUG.lblStage.Caption.get(), "Unable to open firmware file!");
  EXPECT_EQ(world_.frmDBUG.lblBytes.Caption.get(), "0");
  EXPECT_EQ(world_.frmDBUG.lblErrors.Caption.get(),
            "Failed to open firmware file, the error is: File not found: " + path + ", 53");
  world_.directory.write("FNTLCDc.s19", std::string("51705170"));
  loader_.ConvertFront();
  EXPECT_EQ(world_.frmDBUG.lblStage.Caption.get(), "Opened firmware file ");
  EXPECT_EQ(world_.frmDBUG.lblBytes.Caption.get(), "0");
  EXPECT_EQ(world_.frmDBUG.lblErrors.Caption.get(), "File length is 2 Bytes");
}

TEST_F(FrontImageTest, RecordsBecomeDigitTextWithoutAddressesAndSums) {
  ASSERT_TRUE(load(std::string(kHead) + "S10400003FBC\r\nS1030001FB\r\nS1051000A09F00\r\n" + kEnd)) << lastBox();
  EXPECT_EQ(state_.FrontImage, "517065485770");
  EXPECT_EQ(state_.FrontCodeBytes, 3);
  EXPECT_EQ(world_.form1.txtlen.Text.get(), "3");
  EXPECT_EQ(loader_.SRecordText.substr(0, 16), "8348485448484848");
  state_.ProductCode = "WS";
  EXPECT_FALSE(loader_.LoadFrontImage());
  EXPECT_TRUE(lastBox().ends_with("FNTLCD.s19, 53")) << lastBox();
  world_.directory.write("FNTLCD.s19", std::string("S0030000FC\r\nS104000000FB\r\nS9"));
  EXPECT_TRUE(loader_.LoadFrontImage());
  EXPECT_EQ(state_.FrontImage, "4848");
}

TEST_F(FrontImageTest, RecordsOfAnotherShapeGiveABoxAndNoImage) {
  const std::string data = "S10400003FBC\r\n";
  std::string tooLong = kHead;
  for (int i = 0; i < 8192; ++i) {
    tooLong += data;
  }
  const std::string head = kHead;
  const std::string notRecords = "is not an S-record file for a front panel: ";
  const std::string noLineEnd = notRecords + "no line end (CR LF) where the record's count puts it at byte ";
  const std::string noCount = notRecords + "the count is not a hexadecimal number at byte 21";
  const std::string notImage = "is not a front panel image: no hexadecimal digit at position 3";
  const std::string otherRecord = "holds a record that is neither S1 nor S9";
  const std::pair<std::string, std::string> cases[] = {
      {"", notRecords + "the file ends at byte 1"},
      {"S00600004844521B\nS10400003FBC\nS9030000FC\n", noLineEnd + "17"},
      {"S00600004844521B\r\r" + data + kEnd, noLineEnd + "17"},
      {"S00600004844521B\n\n" + data + kEnd, noLineEnd + "17"},
      {head + "S10400003aBC\r\n" + kEnd, notImage},
      {head + "S10400003fBC\r\n" + kEnd, noLineEnd + "31"},
      {head + "S20500000003FBC\r\n" + kEnd, otherRecord},
      {head + head + data + kEnd, otherRecord},
      {head + kEnd, otherRecord},
      {head + "S1020000\r\n" + kEnd, notRecords + "the record's count is too small at byte 21"},
      {head + "S10500003FBC\r\n" + kEnd, noLineEnd + "33"},
      {head + "S10400003FB\r\n" + kEnd, noLineEnd + "31"},
      {head + "S1G400003FBC\r\n" + kEnd, noCount},
      {head + "S1/400003FBC\r\n" + kEnd, noCount},
      {head + "S1:400003FBC\r\n" + kEnd, noCount},
      {head + "S1@400003FBC\r\n" + kEnd, noCount},
      {head + "S1`400003FBC\r\n" + kEnd, noCount},
      {head + "S1g400003FBC\r\n" + kEnd, noCount},
      {head + data + "S104000", notRecords + "the file ends at byte 45"},
      {head + data, notRecords + "the file ends at byte 33"},
      {head + data + kEnd + data + kEnd, "holds records behind its S9 record"},
      {head + data + "S804000000FB\r\n", otherRecord},
      {head + data + "\r\n" + kEnd, notRecords + "no record begins at byte 33"},
      {"51705170", notRecords + "no record begins at byte 1"},
      {tooLong + kEnd, "is not a front panel image: it is too long"},
  };
  for (const auto& [records, why] : cases) {
    state_.FrontImage = "48484848";
    EXPECT_FALSE(load(records)) << why;
    EXPECT_EQ(lastBox(), "Error opening or reading S-Record file!, vrc2fnt.s19 " + why + ", 13") << records.substr(0, 100);
    EXPECT_EQ(state_.FrontImage, "") << why;
  }
  EXPECT_EQ(world_.screen.boxes().size(), std::size(cases)) << "one box each";
}

TEST_F(FrontImageTest, CountsOfEitherCaseAreUnderstoodAndEventsRunMeanwhile) {
  std::string records = kHead;
  constexpr int kRounds = 40;
  for (int round = 0; round < kRounds; ++round) {
    for (const char* count : {"0A", "0a", "0C", "0c", "19"}) {
      const std::size_t bytes = H2D(count) - std::size_t{3};
      records += std::string("S1") + count + "0000" + std::string(2 * bytes, '0') + "FF\r\n";
    }
  }
  const Micros before = world_.time.now();
  ASSERT_TRUE(load(records + kEnd)) << lastBox();
  EXPECT_EQ(state_.FrontCodeBytes, kRounds * (7 + 7 + 9 + 9 + 22));
  // A pass that finds nothing rests for 20 us: one for 64 bytes that are read, and one for each record.
  EXPECT_EQ(world_.time.now() - before,
            20 * static_cast<Micros>((records.size() + std::string(kEnd).size()) / 64 + std::size_t{kRounds} * 5));
}

}  // namespace
}  // namespace firmlane::test
