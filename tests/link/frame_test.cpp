#include "link/frame.h"

#include <gtest/gtest.h>

#include "link/command_set.h"
#include "world.h"

namespace firmlane::test {
namespace {

TEST(Frame, AddressesAreSplitIntoGroupsOfSevenBits) {
  for (const auto& [number, groups] : {std::pair{0, "00 00 00"},
                                       {300, "00 02 2C"},
                                       {16384, "01 00 00"},
                                       {16511, "01 00 7F"},
                                       {2097151, "7F 7F 7F"},
                                       {2097152, "00 00 00"},
                                       {-1, "7F 7F 7F"}}) {
    EXPECT_EQ(hex(sevenBitGroups(number)), groups) << number;
  }
}

TEST(Frame, TheCheckAcceptsGoodFramesOnlyAndNeverReadsBeyondThem) {
  FrameLengths lengths;
  lengths.fill();
  for (const auto& [frame, good, what] : {
           std::tuple{"02 00 00 00 1F 02 21 3E", 1, "erase report"},
           {"02 00 00 00 06 03 09 3E 3E 55", 1, "bytes behind the frame"},
           {"02 00 00 00 60 01 61 3E", 1, "code 96"},
           {"02 00 00 00 1F 02 A1 3E", 1, "top bit of the checksum does not count"},
           {"02 7F 7F 7F 1F 02 1E 3E", 1, "sum beyond seven bits"},
           {"02 00 00 00 1F 02 22 3E", 0, "bad checksum"},
           {"02 00 00 00 85 02 07 3E", 0, "code 133 is not code 6"},
           {"02 00 00 00 05 02 07 3E", 0, "code without an entry"},
           {"02 00 00 00 6E 02 70 3E", 0, "code 110, beyond the table"},
           {"02 00 00 00 7F 02 01 3E", 0, "code 127, beyond the table"},
           {"02 01 02 03 69 01 02 03 04 05 06 07 08 09 0A 0B 0C 3D 3E", 1, "code 105"},
           {"02 01 02 03 69 01 02 03 04 05 06 07 08 09 0A 0B 0D 3D 3E", 0, "code 105, bad byte"},
           {"02 01 02 03 69 01 02 03 04 05 06 07 08 09 0A 0B 0C", 0, "code 105, cut"},
           {"02 00 00 00 1F 02 21", 1, "its end is still to come"},
           {"02 00 00 00 1F 02", 0, "cut in front of the checksum"},
           {"02 00 00 00", 0, "cut in front of the code"},
           {"", 0, "nothing"},
       }) {
    const Bytes withMore = bytes(std::string(frame) + " 21 3E");  // what stands behind a cut frame must not complete it
    EXPECT_EQ(Valid_Check(ByteSpan(withMore).first(withMore.size() - 2), lengths), good) << what;
  }
}

class CommandSetTest : public testing::Test {
 protected:
  CommandSetTest() {
    world_.mainPort.setNumber(1);
    world_.state.SerialNumber = 3000001;
  }

  World world_;
  VirtualWire& wire_ = world_.wires.add(1);
  CommandSet commands_{world_.mainPort, world_.state, world_.frmAuto, world_.frmVRCAuto};
};

struct Command {
  const char* name;
  std::function<void(CommandSet&)> send;
  const char* bytes;
  bool opensPort;
};

const Command kCommands[] = {
    {"who is there, any", [](CommandSet& c) { c.Send_Who_is_there(999); }, "02 00 00 00 01 01 80", true},
    {"who is there, 0", [](CommandSet& c) { c.Send_Who_is_there(0); }, "02 00 00 00 01 01 80", true},
    {"who is there, 16511", [](CommandSet& c) { c.Send_Who_is_there(16511); }, "02 01 00 7F 01 01 80", true},
    {"reset link", &CommandSet::SendResetLink, "02 00 00 00 72 72 80", false},
    {"force reset", &CommandSet::Send_ForceReset, "02 00 00 00 77 77 80", false},
    {"load preset", &CommandSet::SendLoadPreset, "02 00 00 00 0A 00 00 0A 80", false},
    {"set serial", &CommandSet::SetSerial, "02 00 00 00 27 00 00 01 00 00 00 28 80", false},
    {"DSP", &CommandSet::Send_WantToProgram, "02 00 00 00 1E 01 1F 3E 3E", false},
    {"Hub", &CommandSet::Send_WantToProgramNH, "02 00 00 00 1E 21 3F 3E 3E", false},
    {"RF1", &CommandSet::Send_WantToProgramRF1, "02 00 00 00 1E 30 4E 3E 3E", true},
    {"RF2", &CommandSet::Send_WantToProgramRF2, "02 00 00 00 1E 40 5E 3E 3E", true},
    {"Front", &CommandSet::Send_WantToProgramFront, "02 00 00 00 1E 50 6E 3E 3E", true},
    {"Front A", &CommandSet::Send_WantToProgramFront1, "02 00 00 00 1E 35 53 3E 3E", true},
    {"Front B", &CommandSet::Send_WantToProgramFront2, "02 00 00 00 1E 3A 58 3E 3E", true},
    {"microphones", &CommandSet::SendWantToProgramMic, "02 00 00 00 50 01 51 3E 3E", false},
};

TEST_F(CommandSetTest, EachCommandGoesOutByteForByte) {
  for (const Command& command : kCommands) {
    if (!world_.mainPort.IsOpen()) {
      world_.mainPort.Open();
    }
    const auto before = static_cast<std::ptrdiff_t>(wire_.sent().size());
    command.send(commands_);
    EXPECT_EQ(hex(Bytes(wire_.sent().begin() + before, wire_.sent().end())), command.bytes) << command.name;
  }
}

TEST_F(CommandSetTest, AClosedPortIsOpenedByThoseThatMayAndRefusedToTheOthers) {
  for (const Command& command : kCommands) {
    world_.mainPort.Close();
    const int opens = wire_.opens();
    if (command.opensPort) {
      command.send(commands_);
    } else {
      EXPECT_THROW(command.send(commands_), Failure) << command.name;
    }
    EXPECT_EQ(wire_.opens() - opens, command.opensPort ? 1 : 0) << command.name;
  }
}

TEST_F(CommandSetTest, SerialNumbersTravelWithoutTheirModelDigit) {
  world_.mainPort.Open();
  for (const auto& [serial, frame] : {std::pair{1000128, "02 00 00 00 27 00 01 00 00 00 00 28 80"},
                                      {300, "02 00 00 00 27 00 02 2C 00 00 00 55 80"},
                                      {123456, "02 00 00 00 27 07 44 40 00 00 00 32 80"},
                                      {1234567, "02 00 00 00 27 0E 28 47 00 00 00 24 80"},
                                      {10000300, "02 00 00 00 27 00 02 2C 00 00 00 55 80"},
                                      {-5, "02 00 00 00 27 7F 7F 7B 00 00 00 20 80"}}) {
    const auto before = static_cast<std::ptrdiff_t>(wire_.sent().size());
    world_.state.SerialNumber = serial;
    commands_.SetSerial();
    EXPECT_EQ(hex(Bytes(wire_.sent().begin() + before, wire_.sent().end())), frame) << serial;
  }
}

TEST_F(CommandSetTest, TheTimeOfSendingStandsInTheWindowOfTheWizardInCharge) {
  world_.mainPort.Open();
  commands_.Send_WantToProgramNH();
  EXPECT_EQ(world_.frmAuto.txtSent.Text.get(), world_.time.timeOfDay());
  EXPECT_EQ(world_.frmVRCAuto.txtSent.Text.get(), "");
  world_.state.InVrcAutoWizard = true;
  commands_.Send_ForceReset();
  EXPECT_EQ(world_.frmVRCAuto.txtSent.Text.get(), world_.time.timeOfDay());
}

}  // namespace
}  // namespace firmlane::test
