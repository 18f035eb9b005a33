// The forms in which images are written, and what a unit accepts as a version.
#include <gtest/gtest.h>

#include "units/faults.h"
#include "units/firmware.h"
#include "units/srecords.h"
#include "world.h"

namespace firmlane::sim {
namespace {

std::string text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

TEST(Firmware, RecordsAreUpperCaseWithCrLfBetweenHeadAndEnd) {
  EXPECT_EQ(text(writeRecords(test::bytes("3F"))), "S00B00004649524D5741524597\r\nS10400003FBC\r\nS9030000FC\r\n");
  EXPECT_EQ(text(writeDigitText(test::bytes("3F 0A"))), "51704865");
}

TEST(Firmware, CodeBeyond64KiloBytesReadsBackFromItsRecords) {
  const Bytes code = makeFirmware(ImageKind::WirelessHub, {1, 2, 0}, 70000);
  const std::string file = text(writeRecords(code));
  Bytes readBack;
  for (std::size_t at = 0; at < file.size();) {
    const std::size_t end = file.find("\r\n", at);
    const auto record = parseRecord(std::string_view(file).substr(at, end - at));
    ASSERT_TRUE(record) << file.substr(at, end - at);
    if (record->isData()) {
      ASSERT_EQ(record->address, readBack.size());
      readBack.insert(readBack.end(), record->data.begin(), record->data.end());
    }
    at = end + 2;
  }
  EXPECT_EQ(readBack, code);
}

TEST(Firmware, BadRecordsAreRefused) {
  for (const char* line : {"", "S1", "S10400003FBD", "S10500003FBB", "S10400003fbc", "X10400003FBC", "S40400003FBC",
                           "S10400003FB", "S1040000GFBC", "S1020000"}) {
    EXPECT_FALSE(parseRecord(line)) << line;
  }
}

TEST(Firmware, VersionTexts) {
  EXPECT_EQ(parseVersion("2.31"), (Version{2, 31, 0}));
  EXPECT_EQ(parseVersion("5.0.2"), (Version{5, 0, 2}));
  for (const char* bad : {"", "2", "2.", "2.128", "2.3.4.5", "2.x", ".3", "2.3.", "-1.2"}) {
    EXPECT_FALSE(parseVersion(bad)) << bad;
  }
}

TEST(FaultNames, EachNameSetsWhatItSays) {
  for (const std::string_view name : faultNames()) {
    Faults faults;
    ASSERT_TRUE(setFault(faults, name)) << name;
    EXPECT_EQ(faultsText(faults), name == "none"   ? ""
                                  : name == "late" ? "late-answer late-erase late-verdict"
                                                   : std::string(name));
  }
  Faults faults;
  EXPECT_FALSE(setFault(faults, "sulks"));
}

}  // namespace
}  // namespace firmlane::sim
