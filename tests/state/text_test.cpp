#include "state/text.h"

#include <gtest/gtest.h>

#include "state/run_state.h"

namespace firmlane {
namespace {

TEST(TextTest, ANumberIsReadFromTheHeadOfAText) {
  struct Case {
    const char* text;
    double number;
  };
  for (const Case& c :
       {Case{"2.31", 2.31}, {"  2.30 ", 2.3}, {"", 0}, {"N/A", 0}, {"2.3.4", 2.3}, {"12abc", 12}, {".5", 0.5}, {"3.", 3}}) {
    EXPECT_EQ(leadingNumber(c.text), c.number) << c.text;
  }
}

TEST(TextTest, NumbersAreShownInTheirForms) {
  EXPECT_EQ(twoDecimals(2.3), "2.30");
  EXPECT_EQ(twoDecimals(0), "0.00");
  EXPECT_EQ(plainNumber(487 / 100.0), "4.87");
  EXPECT_EQ(plainNumber(500 / 100.0), "5");
  EXPECT_EQ(nearest(10, 4), 2) << "a half goes to the even neighbour";
  EXPECT_EQ(nearest(14, 4), 4);
}

TEST(TextTest, FindCountsFromOneAndNeverLeavesTheText) {
  EXPECT_EQ(find("a|b|", 1, "|"), 2);
  EXPECT_EQ(find("a|b|", 3, "|"), 4);
  EXPECT_EQ(find("a|b|", 5, "|"), 0);
  EXPECT_EQ(find("a|b|", 99, "|"), 0);
  EXPECT_EQ(find("a|b|", 0, "|"), 0);
}

TEST(SystemRecordTest, TextsArePaddedAndCutToTheirField) {
  SystemRecord record;
  EXPECT_EQ(record.SystemVersion.text(), std::string(10, '\0'));
  EXPECT_EQ(record.SystemVersion.trimmed(), "");
  record.SystemVersion = "2.31";
  EXPECT_EQ(record.SystemVersion.text(), "2.31      ");
  record.SystemVersion = "a text too long";
  EXPECT_EQ(record.SystemVersion.text(), "a text too");
}

TEST(RunStateTest, FieldsAreFoundByName) {
  RunState state;
  state.SerialNumber = 3000001;
  EXPECT_EQ(std::get<std::int32_t>(*runStateField(state, "SerialNumber")), 3000001);
  EXPECT_EQ(std::get<std::int32_t>(*runStateField(state, "WizardPage")), -2);
  EXPECT_EQ(std::get<std::vector<SystemRecord>>(*runStateField(state, "LwxSysFile")).size(), 201U);
  EXPECT_FALSE(runStateField(state, "NoSuchField").has_value());
}

}  // namespace
}  // namespace firmlane
