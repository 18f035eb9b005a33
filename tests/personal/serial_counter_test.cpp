// The file of the serial numbers: no two units get one number, whatever happens to the file, the stations and the computer.
#include <gmock/gmock.h>

#include "faulty_disk.h"
#include "serial_number_world.h"

namespace firmlane::test {
namespace {

TEST_F(SerialNumberTest, FileOfAnyKindGivesANumberOrSaysWhyNot) {
  for (const auto& [content, number] :
       {std::pair{"", 1}, {"05 00 00", 1}, {"05 00 00 00", 5}, {"FF FF FF 7F 09", 2147483647}, {"FE FF FF FF", -2}}) {
    world_.directory.write("sn.wls", bytes(content));
    serialFile_.ReadSerialFile();
    EXPECT_EQ(state_.SerialNumber, number) << content;
    EXPECT_EQ(state_.FileSerial, number) << content;
  }
  std::filesystem::remove("sn.wls");
  serialFile_.ReadSerialFile();
  EXPECT_EQ(form1_.txtNum.Text.get(), "1");
  for (const std::int32_t number : {-2, 1000000, 2147483647}) {
    state_.SerialNumber = number;
    EXPECT_THROW(serialFile_.reserve(), Failure) << number;
  }
  EXPECT_FALSE(world_.directory.has("sn.wls"));

  std::filesystem::create_directory("sn.wls");
  world_.screen.answerOthers();
  serial_.btnSN_Click();
  EXPECT_EQ(box().text, "Not a file: sn.wls");
  EXPECT_EQ(page(), kReady);
}

TEST_F(SerialNumberTest, WhatTheUserAndAnotherStationDoMeanwhileGivesNoNumberTwice) {
  const auto count = [this](std::int32_t number) { return [this, number] { writeNumber(number); }; };
  const auto both = [](auto first, auto second) {
    return [=] {
      first();
      second();
    };
  };
  const auto nothing = [] {};
  struct Case {
    const char* what;
    std::function<void()> onNumberPage;
    std::int32_t fileThen;
    std::function<void()> onModelPage;
    std::int32_t sent;
    std::int32_t file;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"nothing", nothing, 100, nothing, 100, 101},
           {"it takes one", nothing, 100, count(101), 101, 102},
           {"it takes many", nothing, 100, count(150), 150, 151},
           {"an edit up", type("200"), 200, nothing, 200, 201},
           {"the same, with blanks", type(" 100 "), 100, nothing, 100, 101},
           {"it takes the edited one", type("200"), 200, count(201), 201, 202},
           {"it has passed the edit", both(count(300), type("200")), 300, nothing, 300, 301},
           {"an edit taken back in part", both(type("2000"), type("200")), 200, nothing, 200, 201},
           {"an edit taken back", both(type("2000"), type("100")), 100, nothing, 100, 101},
           {"taken back behind its count", both(count(150), both(type("2000"), type("120"))), 150, nothing, 150, 151},
           {"counted on from the edit", both(type("200"), both(count(201), type("150"))), 201, nothing, 201, 202},
           {"a number by hand", type("50"), 100, count(150), 50, 150},
       }) {
    writeNumber(100);
    unit_.heard.clear();
    std::string fileThen;
    at(1.5, [&] {
      c.onNumberPage();
      EXPECT_FALSE(world_.newserial.Visible) << c.what;
      fileThen = file();
    });
    at(2.5, c.onModelPage);
    runSerial();
    EXPECT_EQ(fileThen, content(c.fileThen)) << c.what;
    EXPECT_EQ(unit_.heard.at(0).substr(15, 8), hex(ByteSpan(sevenBitGroups(c.sent)))) << c.what;
    EXPECT_EQ(form1_.txtNum.Text.get(), std::to_string(c.sent)) << c.what;
    EXPECT_EQ(file(), content(c.file)) << c.what;
    next();
  }
  // What was edited for a unit before is nothing to go back behind.
  writeNumber(100);
  for (const std::int32_t number : {200, 150}) {
    serialFile_.ReadSerialFile();
    state_.SerialNumber = number;
    serialFile_.WriteSerialFile();
    EXPECT_EQ(file(), content(200));
  }
}

TEST_F(SerialNumberTest, TheUserReadsWhichNumberTheReceiverReallyGetsAndWhoKeepsTheFile) {
  writeNumber(100);
  at(2.5, [&] { writeNumber(101); });
  runSerial();
  EXPECT_EQ(form1_.lblOutcome.Caption.get(), "Another station has taken number 100: this receiver gets number 101");
  EXPECT_EQ(form1_.lblOutcome.Kind.get(), "caution");
  next();
  EXPECT_EQ(page(), kReady);

  world_.screen.answerOthers();
  const auto other = FileLock::tryTake("sn.wls.lock");
  const Micros begin = world_.time.now();
  runSerial();
  EXPECT_EQ((world_.time.now() - begin) / kSecond, 3 + 5 + 1);
  EXPECT_EQ(box().text, "Another station keeps sn.wls locked");
  EXPECT_EQ(file(), content(102));
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_EQ(page(), kReady);
  type("102")();
  EXPECT_EQ(box().text, "Error: Another station keeps sn.wls locked (#16)");
}

TEST_F(SerialNumberTest, ANumberThatCannotHaveLeftIsGivenBackUnlessAnotherStationHasCountedOn) {
  world_.screen.answerOthers();
  writeNumber(100);
  at(2.5, [&] { writeNumber(101); });
  world_.screen.onChange = [&](Control&) {
    if (form1_.txtNum.Text.get() == "101") {
      wire_.vanish();  // the number is taken already
    }
  };
  runSerial();
  EXPECT_TRUE(unit_.heard.empty());
  EXPECT_EQ(file(), content(101));
  EXPECT_EQ(page(), kReady);

  serialFile_.ReadSerialFile();
  serialFile_.reserve();
  writeNumber(103);
  serialFile_.giveBack();
  EXPECT_EQ(file(), content(103));

  serialFile_.ReadSerialFile();
  serialFile_.reserve();
  state_.SerialNumber = 50;
  serialFile_.reserve();
  serialFile_.giveBack();
  EXPECT_EQ(file(), content(104)) << "of the unit before";
}

TEST_F(SerialNumberTest, APowerFailureWhileANumberIsTakenGivesNoNumberTwice) {
  const auto disk = std::make_shared<FaultyDisk>(world_.directory.path().string());
  const Files files(world_.directory.path(), noRecorder(), disk);
  SerialFile file(files, state_, form1_);
  constexpr int kOperations = 6;
  for (int at = 0; at <= kOperations; ++at) {
    for (unsigned seed = 0; seed < 10; ++seed) {
      SCOPED_TRACE("operation " + std::to_string(at) + ", seed " + std::to_string(seed));
      std::mt19937 random(seed);
      writeNumber(1000);
      file.ReadSerialFile();
      disk->plan(FaultyDisk::Fault::Power, at);
      bool given = true;
      try {
        file.reserve();
      } catch (const PowerFailed&) {
        given = false;
      }
      EXPECT_EQ(given, at == kOperations);
      disk->reboot(random);
      file.ReadSerialFile();
      EXPECT_THAT(state_.SerialNumber, testing::AnyOf(1001, given ? 1001 : 1000));
    }
  }
}

}  // namespace
}  // namespace firmlane::test
