#include <gtest/gtest.h>

#include <random>

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
  for (const auto& [text, value] : {std::pair{"3F", 0x3F}, {"aB", 0xAB}, {"G1", 1}, {"F", 0xF0}, {"", 0}}) {
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
}

TEST_F(FrontImageTest, AMissingConvertedFileIsToldAndNotedInTheDebugView) {
  const std::string path = world_.files.path("FNTLCDc.s19");
  EXPECT_FALSE(loader_.ConvertFront());
  EXPECT_EQ(lastBox(), "Error opening or reading S-Record file!, File not found: " + path + ", 53");
  EXPECT_EQ(world_.frmDBUG.lblErrors.Caption.get(), "");
  state_.DebugView = true;
  loader_.ConvertFront();
  EXPECT_EQ(world_.frmDBUG.lblStage.Caption.get(), "Unable to open firmware file!");
  EXPECT_EQ(world_.frmDBUG.lblBytes.Caption.get(), "0");
  EXPECT_EQ(world_.frmDBUG.lblErrors.Caption.get(),
            "Failed to open firmware file, the error is: File not found: " + path + ", 53");
  world_.directory.write("FNTLCDc.s19", std::string("51705170"));
  loader_.ConvertFront();
  EXPECT_EQ(world_.frmDBUG.lblStage.Caption.get(), "Opened firmware file ");
  EXPECT_EQ(world_.frmDBUG.lblErrors.Caption.get(), "File length is 2 Bytes");
}

TEST_F(FrontImageTest, RecordsBecomeDigitTextWithoutAddressesAndSums) {
  ASSERT_TRUE(load(std::string(kHead) + "S10400003FBC\r\nS1030001FB\r\nS1051000A09F00\r\n" + kEnd)) << lastBox();
  EXPECT_EQ(state_.FrontImage, "517065485770");
  EXPECT_EQ(state_.FrontCodeBytes, 3);
  EXPECT_EQ(world_.form1.txtlen.Text.get(), "3");
  EXPECT_EQ(loader_.SRecordText.substr(0, 16), "8348485448484848");
  state_.ProductCode = "WS";
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
  const std::pair<const char*, std::string> cases[] = {
      {"empty", ""},
      {"LF line ends", "S00600004844521B\nS10400003FBC\nS9030000FC\n"},
      {"lower case data a", kHead + std::string("S10400003aBC\r\n") + kEnd},
      {"lower case data f", kHead + std::string("S10400003fBC\r\n") + kEnd},
      {"S2 record", kHead + std::string("S20500000003FBC\r\n") + kEnd},
      {"second S0", std::string(kHead) + kHead + data + kEnd},
      {"no data record", std::string(kHead) + kEnd},
      {"count too small", kHead + std::string("S1020000\r\n") + kEnd},
      {"count too large", kHead + std::string("S10500003FBC\r\n") + kEnd},
      {"odd length", kHead + std::string("S10400003FB\r\n") + kEnd},
      {"count not a number", kHead + std::string("S1G400003FBC\r\n") + kEnd},
      {"cut record", kHead + data + "S104000"},
      {"no S9", kHead + data},
      {"records behind S9", kHead + data + kEnd + data + kEnd},
      {"S8 end", kHead + data + "S804000000FB\r\n"},
      {"blank line", kHead + data + "\r\n" + kEnd},
      {"digits of the other form", "51705170"},
      {"too long", tooLong + kEnd},
  };
  for (const auto& [what, records] : cases) {
    const std::size_t boxes = world_.screen.boxes().size();
    state_.FrontImage = "48484848";
    EXPECT_FALSE(load(records)) << what;
    EXPECT_EQ(world_.screen.boxes().size(), boxes + 1) << what;
    EXPECT_EQ(lastBox().find("Error opening or reading S-Record file!, vrc2fnt.s19 "), 0U) << lastBox();
    EXPECT_EQ(state_.FrontImage, "") << what;
  }
}

TEST_F(FrontImageTest, NoDamagedFilePassesWithShiftedCode) {
  const std::string tail = kEnd;
  std::string good = kHead;
  for (int i = 0; i < 8; ++i) {
    good += "S1070000DEADBEEF12\r\n";
  }
  ASSERT_TRUE(load(good + tail));
  const std::size_t size = state_.FrontImage.size();
  for (unsigned seed = 1; seed <= 300; ++seed) {
    std::mt19937 random(seed);
    std::string bad = good;
    const std::size_t at = random() % bad.size();
    const int kind = static_cast<int>(random() % 3);
    const char byte = static_cast<char>(random() % 256);
    if (kind == 0) {
      bad[at] = byte;
    } else if (kind == 1) {
      bad.insert(at, 1, byte);
    } else {
      bad.erase(at, 1);
    }
    if (load(bad + tail)) {
      EXPECT_EQ(kind, 0) << "seed " << seed;
      EXPECT_EQ(state_.FrontImage.size(), size) << "seed " << seed;
    } else {
      EXPECT_EQ(state_.FrontImage, "") << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace firmlane::test
