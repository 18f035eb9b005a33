#include "platform/console/console_session.h"

#include <gmock/gmock.h>

#include "platform/console/command_words.h"
#include "platform/console/console_screen.h"
#include "world.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

constexpr const char* kOk = R"({"ok":true})";

/// The protocol over forms that nothing works, in virtual time.
class ConsoleSessionTest : public testing::Test {
 protected:
  ConsoleSessionTest() {
    screen_.onChange = [this] { session_.look(); };
    screen_.onBoxClosed = [this] { session_.boxClosed(); };
    form1_.Show();
    lines_.clear();
  }

  /// Gives a line and lets the program run for a moment; the lines that came of it.
  std::vector<std::string> give(const std::string& line, Micros span = 10 * kMillisecond) {
    lines_.clear();
    session_.take(line);
    pass(span);
    return lines_;
  }
  void pass(Micros span) {
    const Micros end = time_.now() + span;
    while (time_.now() < end) {
      queue_.waitEventsUntil(std::min(end, time_.now() + kMillisecond));
      session_.look();
      session_.serve();
    }
  }

  VirtualTime time_;
  EventQueue queue_{time_, time_};
  std::vector<std::string> lines_;
  ConsoleScreen screen_{[this](const Json& line) { lines_.push_back(line); }};
  FormHost host_{queue_, screen_};
  RunState state_;
  Form1 form1_{host_};
  FrmPort frmPort_{host_};
  bool quit_ = false;
  ConsoleSession session_{host_, state_, time_, [this](const Json& line) { lines_.push_back(line); }, [this] { quit_ = true; }};
};

// A command and its one answer.
TEST_F(ConsoleSessionTest, EachCommandGetsItsAnswer) {
  state_.SerialNumber = 3000001;
  state_.ProductCode = "WS";
  form1_.txtstat.Text = "a\r\nb \xE9";
  form1_.List1.AddItem("one");
  struct Case {
    const char* command;
    const char* answer;
  };
  for (const Case& c : {
           Case{"get Form1.Command3", R"({"ok":true,"value":{"caption":"Next >>","visible":true,"enabled":true}})"},
           Case{"get Form1.Command3.caption", R"({"ok":true,"value":"Next >>"})"},
           Case{"get Form1.txtstat.text", "{\"ok\":true,\"value\":\"a\\r\\nb \xC3\xA9\"}"},
           Case{"get Form1.List1.lines", R"({"ok":true,"value":["one"]})"},
           Case{"get Form1.Option1(0).value", R"({"ok":true,"value":true})"},
           Case{"get Form1.ProgressBar1.value", R"({"ok":true,"value":0})"},
           Case{"get Form1.caption", R"({"ok":true,"value":"Tolvex Firmlane"})"},
           Case{"get frmPort.loaded", R"({"ok":true,"value":false})"},
           Case{"get RunState.SerialNumber", R"({"ok":true,"value":3000001})"},
           Case{"get RunState.ProductCode", R"({"ok":true,"value":"WS"})"},
           Case{"get RunState.Nothing", R"({"ok":false,"error":"no such field"})"},
           Case{"get Form1.Command3.colour", R"({"ok":false,"error":"no such field"})"},
           Case{"get Form1.nothing", R"({"ok":false,"error":"no such control"})"},
           Case{"get form1.Command3", R"({"ok":false,"error":"no such control"})"},
           Case{"forms", R"({"ok":true,"value":[{"form":"Form1","modal":false}]})"},
           Case{"click Form1.Option1(9)", R"({"ok":false,"error":"no such control"})"},
           Case{"click Form1.btnSN", R"({"ok":false,"error":"not visible"})"},
           Case{"choose Form1.List1 0", R"({"ok":false,"error":"not visible"})"},
           Case{"choose Form1.List1 x", R"({"ok":false,"error":"bad command: the line of a list is a whole number"})"},
           Case{"answer OK", R"({"ok":false,"error":"no message box"})"},
           Case{"close frmPort", R"({"ok":false,"error":"not visible"})"},
           Case{"wait form nothing 1", R"({"ok":false,"error":"no such control"})"},
           Case{"wait Form1.caption >= 1 1", R"({"ok":false,"error":"bad command: these values cannot be compared so"})"},
           Case{"sleep -1", R"({"ok":false,"error":"bad command: seconds are a number from 0 up"})"},
           Case{"get", R"({"ok":false,"error":"bad command: get has the wrong number of words"})"},
           Case{"\"open", R"({"ok":false,"error":"bad command: a quote is left open, or the line is not UTF-8"})"},
           Case{"\xFF\xFE", R"({"ok":false,"error":"bad command: a quote is left open, or the line is not UTF-8"})"},
       }) {
    EXPECT_THAT(give(c.command), ElementsAre(c.answer)) << c.command;
  }
  EXPECT_TRUE(give("").empty());
  EXPECT_TRUE(give("  # a remark").empty());
}

TEST_F(ConsoleSessionTest, ClicksAreTakenBeforeTheNextCommandIsServed) {
  form1_.Command3.OnClick = [this] { form1_.VRCButton.Show(); };
  session_.take("click Form1.Command3");
  EXPECT_THAT(give("click Form1.VRCButton"), ElementsAre(kOk));
}

TEST_F(ConsoleSessionTest, CommandsAreServedWhileAHandlerRunsAndWhileABoxIsUp) {
  form1_.Command3.OnClick = [this] {
    while (form1_.lblTop.Visible) {
      queue_.waitEventsUntil(time_.now() + kMillisecond);
      session_.serve();
    }
    host_.showMessage("done");
    form1_.lblTop.Caption = "after the box";
  };
  form1_.Command2.OnClick = [this] { form1_.lblTop.Hide(); };
  lines_.clear();
  session_.take("click Form1.Command3");
  session_.take("get RunState.WizardPage");
  session_.take("click Form1.Command2");
  session_.take("wait messagebox 5");
  session_.take("click Form1.Command5");
  session_.take("answer Yes");
  session_.take("answer OK");
  session_.take("wait Form1.lblTop.caption == \"after the box\" 5");
  // While the box holds the program, only the outside still serves commands.
  time_.after(2 * kSecond, [this] { session_.serve(); });
  pass(4 * kSecond);
  EXPECT_THAT(lines_,
              ElementsAre(kOk, R"({"ok":true,"value":-2})", kOk,
                          R"({"event":"messagebox","text":"done","title":"Tolvex Firmlane","icon":"none","buttons":["OK"]})", kOk,
                          R"({"ok":false,"error":"message box is up"})", R"({"ok":false,"error":"no such button"})", kOk, kOk));
}

TEST_F(ConsoleSessionTest, AWaitHoldsBackTheCommandsBehindItAndTellsWhatItSawAtItsEnd) {
  time_.after(2 * kSecond, [this] { form1_.lblTop.Caption = "there it is"; });
  EXPECT_TRUE(give("wait Form1.lblTop.caption contains \"it is\" 5").empty());
  session_.take("get RunState.ComPort");
  pass(kSecond);
  EXPECT_TRUE(lines_.empty());
  pass(2 * kSecond);
  EXPECT_THAT(lines_, ElementsAre(kOk, R"({"ok":true,"value":0})"));
  EXPECT_THAT(give("wait RunState.ComPort >= 3 1", 2 * kSecond), ElementsAre(R"({"ok":false,"error":"timeout","value":0})"));
  EXPECT_THAT(give("wait form frmPort 1", 2 * kSecond), ElementsAre(R"({"ok":false,"error":"timeout"})"));
  EXPECT_THAT(give("sleep 1.5", 2 * kSecond), ElementsAre(kOk));
}

TEST_F(ConsoleSessionTest, AModalFormBlocksTheOthersByName) {
  form1_.Command3.OnClick = [this] { frmPort_.ShowModal(); };
  time_.after(5 * kMillisecond, [this] { session_.take("click Form1.Command2"); });
  time_.after(6 * kMillisecond, [this] { session_.take("close frmPort"); });
  EXPECT_THAT(give("click Form1.Command3"),
              ElementsAre(kOk, R"({"event":"show","form":"frmPort","modal":true})",
                          R"({"ok":false,"error":"blocked by frmPort"})", kOk, R"({"event":"unload","form":"frmPort"})"));
}

TEST_F(ConsoleSessionTest, TheEndAnswersEveryCommandThatIsLeft) {
  session_.take("wait end 5");
  session_.take("get RunState.ComPort");
  lines_.clear();
  session_.ended([this] { lines_.emplace_back("end"); });
  EXPECT_THAT(lines_, ElementsAre("end", kOk, R"({"ok":false,"error":"ended"})"));
}

TEST_F(ConsoleSessionTest, TheEndOfTheInputQuitsBehindTheLastCommand) {
  session_.take("sleep 1");
  session_.takeEnd();
  EXPECT_FALSE(quit_);
  pass(2 * kSecond);
  EXPECT_TRUE(quit_);
}

TEST(CommandWordsTest, BlanksInsideQuotesAndListsDoNotSeparate) {
  EXPECT_THAT(*splitWords(R"(wait A.lines == ["a b", "c"] 1)"), ElementsAre("wait", "A.lines", "==", R"(["a b", "c"])", "1"));
  EXPECT_THAT(*splitWords(R"(type A "x \" y")"), ElementsAre("type", "A", R"("x \" y")"));
  EXPECT_EQ(*wordText(R"("x \" y")"), "x \" y");
  EXPECT_EQ(*wordText("\"\\u00e9\\u20ac\""), "\xE9?");
}

}  // namespace
}  // namespace firmlane::test
