#include <gtest/gtest.h>

#include "forms/counter1.h"
#include "forms/in_house_panel.h"
#include "world.h"

namespace firmlane::test {
namespace {

TEST(Counter1, ShowsTheDigitsOfItsNumberAndNeverLooksOutsideItsPictures) {
  struct Case {
    std::int16_t value;
    const char* shown;
  };
  for (const Case& c :
       {Case{0, "0"}, {7, "7"}, {10, "10"}, {42, "42"}, {99, "99"}, {100, "100"}, {109, "100"}, {32767, "100"}, {-32768, "0"}}) {
    Counter1 counter;
    counter.SetBigdigits(c.value);
    std::string shown;
    for (const Counter1::ImageHolder* holder : {&counter.imgCount2, &counter.imgCount1, &counter.imgCount0}) {
      shown += holder->Visible ? holder->Picture.back() : '\0';
    }
    std::erase(shown, '\0');
    EXPECT_EQ(shown, c.shown) << c.value;
  }
}

class InHousePanelTest : public testing::Test {
 protected:
  World world_;
  std::string asked_;
  InHousePanel panel_{[this] {
                        for (const CheckBox* check : world_.frmAuto.checks()) {
                          asked_ += check->checked() ? check->name() : "";
                        }
                        asked_ += " COM" + std::to_string(world_.state.ComPort) + " " + world_.state.ProductCode;
                        EXPECT_FALSE(world_.frmInHouse.Command1.Enabled);
                      },
                      world_.state, world_.form1, world_.frmAuto, world_.frmInHouse};
};

TEST_F(InHousePanelTest, ProgramsTheChosenProcessorAlone) {
  world_.frmInHouse.Show();
  const char* expected[] = {"Check2", "Check1", "Check3", "Check4", "Check5", ""};
  for (int i = 0; i < world_.frmInHouse.optUP.count(); ++i) {
    asked_.clear();
    world_.frmInHouse.optUP(i).Value = true;
    world_.frmInHouse.Command1.Click();  // the stand-in leaves the box checked, as a failed run does
    EXPECT_EQ(asked_, expected[i] + std::string(" COM2 WS"));
  }
}

}  // namespace
}  // namespace firmlane::test
