#include "link/version_answers.h"

#include <gtest/gtest.h>

#include "fake_unit.h"

namespace firmlane::test {
namespace {

class VersionAnswersTest : public testing::Test {
 protected:
  /// Starts over, as a caller does before each reading.
  void start(const std::string& product) {
    state_ = RunState{};
    state_.ProductCode = product;
    world_.frmVersion.Unload();
    world_.frmVersion.Load();
  }
  void take(const Bytes& answer) {
    state_.IdQueue.at(static_cast<std::size_t>(state_.IdQueueRead)) = std::string(answer.begin(), answer.end());
    answers_.GetID2();
  }
  void take(const std::string& hexText) { take(bytes(hexText)); }
  /// A good ID answer with one byte changed.
  static std::string idWith(std::size_t position, std::uint8_t value) {
    Bytes answer = bytes(kIdAnswer);
    answer.at(position - 1) = value;
    return hex(answer);
  }
  /// Everything on the form: serial, Hub, DSP, RF1, RF2, Front.
  std::string shown() {
    const FrmVersion& form = world_.frmVersion;
    std::string text;
    for (const Label* label : {&form.lblSN, &form.lblHub, &form.lblDSP, &form.lblRF1, &form.lblRF2, &form.lblFront}) {
      text += (text.empty() ? "" : " | ") + label->Caption.get();
    }
    return text;
  }

  World world_;
  RunState& state_ = world_.state;
  VersionAnswers answers_{state_, world_.frmVersion};
};

TEST_F(VersionAnswersTest, TheModelByteGivesLeadingDigitSecondSectionAndMark) {
  for (const auto& [product, byte, model, second, serial] : {
           std::tuple{"WS", 2, 0, false, "1000300"},
           {"WS", 3, 1, false, "2000300"},
           {"WS", 4, 2, false, "3000300"},
           {"WS", 5, 3, true, "4000300"},
           {"WS", 6, 2, false, "3000300 (QDR)"},
           {"WS", 7, 3, true, "4000300 (QDR)"},
           {"WS", 10, 8, true, "9000300"},
           {"WS", 11, 9, true, "10000300"},
           {"WS", 12, 10, false, "11000300"},
           {"WS", 1, -1, false, "300"},
           {"WS", 0, -2, false, "300"},
           {"WS", 127, 125, false, "126000300"},
           {"VC", 0, 0, false, "1000300"},
           {"VC", 1, 1, true, "2000300"},
           {"VC", 2, 2, false, "3000300"},
           {"VC", 3, 3, true, "4000300"},
       }) {
    start(product);
    Bytes answer = bytes(idWith(13, static_cast<std::uint8_t>(byte)));
    answer[7] = 5;  // a Velarc that answers the version request
    take(answer);
    EXPECT_EQ(state_.UnitModel, model) << product << byte;
    EXPECT_EQ(state_.HasRf2, second) << product << byte;
    EXPECT_EQ(world_.frmVersion.lblSN.Caption.get(), serial) << product << byte;
    EXPECT_EQ(std::to_string(state_.SerialNumber), std::string(serial).substr(0, std::string(serial).find(' ')));
    EXPECT_TRUE(state_.GotId);
  }
}

TEST_F(VersionAnswersTest, BothVersionCodesCompleteTheReadingOnEitherLine) {
  struct Case {
    const char* product;
    std::string id;
    std::string versions;
    const char* shown;
  };
  for (const Case& c : {
           Case{"WS", kIdAnswer, kVersionAnswer, "1000300 | 2.5 | 2.31 | 2.12 | N/A | 3.1"},
           {"WS", idWith(13, 5), kVersionAnswer, "4000300 | 2.5 | 2.31 | 2.12 | 1.7 | 3.1"},
           {"WS", idWith(9, 0), kVersionAnswer, "1000300 | 2.5 | 2.3 | 2.12 | N/A | 3.1"},
           {"VC", kVelarcId, kVelarcVersions, "2000300 | 1.2.3 | 5.0.4 | 0.0 | 0.0 | 1.0"},
       }) {
    for (const std::uint8_t code : bytes("5F 69")) {
      start(c.product);
      take(c.id);
      Bytes versions = bytes(c.versions);
      versions[4] = code;
      take(versions);
      EXPECT_EQ(shown(), c.shown);
      EXPECT_TRUE(state_.VersionsRead && state_.VersionsComplete) << c.product << int{code};
    }
  }
  const RunState& s = state_;
  EXPECT_EQ(
      (std::vector<int>{s.VrcFrontAVer1, s.VrcFrontAVer2, s.VrcFrontAVer3, s.VrcFrontBVer1, s.VrcFrontBVer2, s.VrcFrontBVer3}),
      (std::vector<int>{1, 0, 6, 2, 1, 9}));
}

TEST_F(VersionAnswersTest, AVelarcWithAnOldDspIsCompleteAtOnce) {
  for (const auto& [first, second, old, dsp] : {std::tuple{3, 103, true, "4.87"},
                                                {3, 115, true, "4.99"},
                                                {3, 116, false, "0.0"},
                                                {3, 52, true, "4.36"},
                                                {3, 16, true, "4"}}) {
    start("VC");
    Bytes answer = bytes(kVelarcId);
    answer[7] = static_cast<std::uint8_t>(first);
    answer[8] = static_cast<std::uint8_t>(second);
    take(answer);
    EXPECT_EQ(state_.VrcOldDsp && state_.VersionsRead && state_.VersionsComplete && state_.LegacyLink, old) << dsp;
    EXPECT_EQ(world_.frmVersion.lblDSP.Caption.get(), dsp);
    EXPECT_EQ(state_.VrcDspVer3, 2);
  }
  state_.SerialRead = false;
  state_.GotId = false;
  state_.VrcOldDsp = true;
  take(kVelarcId);
  EXPECT_FALSE(state_.VrcOldDsp) << "the next unit is not the last one";
}

TEST_F(VersionAnswersTest, VersionsOutOfRangeAreAskedForAgainOrShownAsNone) {
  for (const auto& [position, value, read, versions] : {
           std::tuple{5U, 10, true, "4000300 | 10.5 | 2.31 | 2.12 | 1.7 | 3.1"},
           {5U, 11, false, "4000300 | 11.5 | 2.31 | 0.0 | 0.0 | 0.0"},
           {6U, 101, false, "4000300 | 2.101 | 2.31 | 0.0 | 0.0 | 0.0"},
           {7U, 8, true, "4000300 | 2.5 | 2.31 | 8.12 | 1.7 | 3.1"},
           {7U, 9, true, "4000300 | 2.5 | 2.31 | 0.0 | 1.7 | 3.1"},
           {8U, 101, true, "4000300 | 2.5 | 2.31 | 0.0 | 1.7 | 3.1"},
           {9U, 9, true, "4000300 | 2.5 | 2.31 | 2.12 | 0.0 | 3.1"},
           {10U, 101, true, "4000300 | 2.5 | 2.31 | 2.12 | 0.0 | 3.1"},
           {11U, 11, false, "4000300 | 2.5 | 2.31 | 2.12 | 1.7 | 0.0"},
           {12U, 100, true, "4000300 | 2.5 | 2.31 | 2.12 | 1.7 | 3.100"},
           {12U, 101, false, "4000300 | 2.5 | 2.31 | 2.12 | 1.7 | 0.0"},
       }) {
    start("WS");
    take(idWith(13, 5));
    Bytes answer = bytes(kVersionAnswer);
    answer.at(position) = static_cast<std::uint8_t>(value);
    take(answer);
    EXPECT_EQ(shown(), versions);
    EXPECT_EQ(state_.VersionsRead, read) << versions;
    EXPECT_EQ(state_.VersionsComplete, read) << versions;
  }
}

TEST_F(VersionAnswersTest, AnswersOfOtherCodesDoNotMakeAUnit) {
  start("VC");
  Bytes other = bytes(kVelarcId);
  other[4] = 3;
  take(other);
  EXPECT_FALSE(state_.SerialRead || state_.GotId);
  EXPECT_EQ(state_.VrcDspVer1, 0);
  Bytes versions = bytes(kVelarcVersions);
  versions[3] = 0x2C;
  take(versions);
  EXPECT_FALSE(state_.VersionsRead || state_.VersionsComplete) << "of a unit that has not said who it is";

  start("WS");
  take("02 00 00 00 02 00 00 02 1F 00 00 00 02 00 00 25 80");  // serial 0
  EXPECT_FALSE(state_.SerialRead || state_.GotId);
  EXPECT_EQ(state_.SerialNumber, 0);

  take("02 00 05 05 03 00 00 01 01 00 00 00 05 00 00 00 80");  // garbled: taken for a serial number, but no ID answer
  EXPECT_TRUE(state_.SerialRead);
  EXPECT_FALSE(state_.GotId);
  take("02 00 06 06 07 00 00 01 01 00 00 00 05 00 00 00 80");
  EXPECT_EQ(state_.SerialNumber, 4000645);
  take(kIdAnswer);
  EXPECT_TRUE(state_.GotId);
  EXPECT_EQ(state_.SerialNumber, 1000300) << "the ID answer is believed, not what was garbled before";
  take(idWith(4, 0x2D));
  EXPECT_EQ(state_.SerialNumber, 1000300) << "one unit is read, not two";
}

TEST_F(VersionAnswersTest, AnswersCutShortAtAnyByteLeaveTheReadingOpen) {
  struct Line {
    const char* product;
    std::string id;
    std::string versions;
    std::size_t enoughId;
    std::size_t enoughVersions;
  };
  for (const Line& line : {Line{"WS", idWith(13, 5), kVersionAnswer, 13, 13}, {"VC", kVelarcId, kVelarcVersions, 13, 17}}) {
    for (std::size_t length = 0; length <= 19; ++length) {
      Bytes id = bytes(line.id);
      id.resize(std::min(length, id.size()));
      start(line.product);
      take(id);
      EXPECT_EQ(state_.GotId, length >= line.enoughId) << line.product << " ID of " << length;

      Bytes versions = bytes(line.versions);
      versions.resize(std::min(length, versions.size()));
      start(line.product);
      take(line.id);
      take(versions);
      EXPECT_EQ(state_.VersionsComplete, length >= line.enoughVersions) << line.product << " versions of " << length;
      EXPECT_EQ(state_.VersionsRead, state_.VersionsComplete) << "a cut answer must be asked for again";
    }
  }
}

}  // namespace
}  // namespace firmlane::test
