#include "bench.h"

namespace firmlane::test {
namespace {

struct Case {
  std::string line;
  std::string answer;
};

TEST_F(ConsoleBench, ReadsComeBackAsDocumented) {
  other.text.hiddenAtStart();
  sheet.text.Caption = "J\xFCrgen\r\nsaid: \"1\\2\"\t\x01";
  other.field.Text = "/home/J\xC3\xBCrgen";
  sheet.list.Lines = {"a", "b\xE9"};
  sheet.list.ListIndex = 1;
  sheet.bar.Value = 3;
  sheet.choice(1).Value = true;
  state.WizardPage = -2;
  state.FileSerial = 100000;
  state.FactoryFirstPass = true;
  state.IdRxBuf = std::string("\xC3\xA9\0", 3);
  state.LwxSystems[1].SystemVersion = "2.31";
  const std::vector<Case> cases = {
      {"get Sheet.next", R"({"ok":true,"value":{"caption":"Next >>","visible":true,"enabled":true}})"},
      {"get \"Sheet.next\"", R"({"ok":true,"value":{"caption":"Next >>","visible":true,"enabled":true}})"},
      {"get Sheet.text.caption", R"({"ok":true,"value":"Jürgen\r\nsaid: \"1\\2\"\t\u0001"})"},
      {"get Other.field.text", R"({"ok":true,"value":"/home/Jürgen"})"},
      {"get Other.text.visible", R"({"ok":true,"value":false})"},
      {"get Sheet.list", R"({"ok":true,"value":{"visible":true,"enabled":true,"lines":["a","bé"],"listindex":1}})"},
      {"get Sheet.bar", R"({"ok":true,"value":{"visible":true,"enabled":true,"value":3,"max":8}})"},
      {"get Sheet.mark.value", R"({"ok":true,"value":0})"},
      {"get Sheet.choice(1).value", R"({"ok":true,"value":true})"},
      {"get Sheet.field", R"({"ok":true,"value":{"text":"","visible":true,"enabled":true}})"},
      {"get Sheet.picture.picture", R"({"ok":true,"value":"lwxpic"})"},
      {"get Sheet.text.height", R"({"ok":true,"value":255})"},
      {"get Other", R"({"ok":true,"value":{"caption":"A sheet","loaded":false,"visible":false}})"},
      {"get RunState.WizardPage", R"({"ok":true,"value":-2})"},
      {"get RunState.FileSerial", R"({"ok":true,"value":100000})"},
      {"get RunState.FactoryFirstPass", R"({"ok":true,"value":true})"},
      {"get RunState.IdRxBuf", R"({"ok":true,"value":"Ã©\u0000"})"},
      {"forms", R"({"ok":true,"value":[{"form":"Sheet","modal":false}]})"},
      {"get Sheet.nothing", R"({"ok":false,"error":"no such control"})"},
      {"get Nothing.text.caption", R"({"ok":false,"error":"no such control"})"},
      {"get Sheet.choice.value", R"({"ok":false,"error":"no such control"})"},
      {"get Sheet.choice(2).value", R"({"ok":false,"error":"no such control"})"},
      {"get sheet.text.caption", R"({"ok":false,"error":"no such control"})"},
      {"get Sheet.text.Caption", R"({"ok":false,"error":"no such field"})"},
      {"get Sheet.text.forecolor", R"({"ok":false,"error":"no such field"})"},
      {"get RunState.Nothing", R"({"ok":false,"error":"no such field"})"},
      {"dump Nothing", R"({"ok":false,"error":"no such control"})"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(answer(c.line), c.answer + "\n") << c.line;
  }
  EXPECT_THAT(answer("get RunState.LwxSystems"),
              testing::HasSubstr(R"({"SystemVersion":"2.31      ","ReleaseDate":"\u0000\u0000)"));
  EXPECT_THAT(
      answer("dump Other"),
      testing::StartsWith(R"({"ok":true,"value":{"Other.text":{"caption":"","visible":false,"enabled":true,"height":255},)"
                          R"("Other.next":{"caption":"Next >>","visible":true,"enabled":true},)"));
}

TEST_F(ConsoleBench, LinesThatMakeNoSenseAreAnsweredAndTheConsoleGoesOn) {
  for (const std::string line : {"klick Sheet.next",
                                 "click",
                                 "click Sheet.next twice",
                                 "choose Sheet.list",
                                 "choose Sheet.list x",
                                 "type Sheet.field \"open",
                                 "type Sheet.field \"a\"b",
                                 "type Sheet.field \"\\u12\"",
                                 "get",
                                 "wait Sheet.text.caption == Next 5",
                                 "wait Sheet.text.caption == [1 5",
                                 "wait Sheet.text.caption",
                                 "wait Sheet.text.caption = \"x\" 5",
                                 "wait Sheet.text.caption == 5",
                                 "wait messagebox soon",
                                 "wait Sheet.text.caption >= 5 5",
                                 "wait Sheet.bar.value contains \"1\" 5",
                                 "wait Sheet.text.caption contains 1 5",
                                 "wait end -1",
                                 "sleep nan",
                                 "forms all",
                                 "quit now",
                                 "\"",
                                 "get Sheet.te\xFFxt"}) {
    EXPECT_THAT(answer(line), testing::MatchesRegex("\\{\"ok\":false,\"error\":\"bad command: .+\"\\}\n")) << line;
  }
  EXPECT_EQ(answer("get " + std::string(CommandLine::kLongest, 'x')),
            "{\"ok\":false,\"error\":\"bad command: the line is too long\"}\n");
  EXPECT_EQ(answer("\n   \n# click Sheet.next \xFF\n  # too\n\r\n\r# and so\nforms \t\r"),
            R"({"ok":true,"value":[{"form":"Sheet","modal":false}]})"
            "\n");
}

TEST_F(ConsoleBench, ActionsReachTheControlsUnderTheRulesOfAUser) {
  std::string log;
  sheet.next.OnClick = [&] { log += "next "; };
  sheet.text.OnClick = [&] { log += "text "; };
  sheet.mark.OnClick = [&] { log += "mark "; };
  sheet.list.OnClick = [&] { log += "list" + std::to_string(sheet.list.ListIndex) + " "; };
  sheet.list.Lines = {"a", "b"};
  sheet.inside.Disable();
  const std::string ok = R"({"ok":true})";
  const auto error = [](const std::string& text) { return R"({"ok":false,"error":")" + text + "\"}"; };
  const std::vector<Case> cases = {
      {"click Sheet.next", ok},
      {"click Sheet.text", ok},
      {"click Sheet.mark", ok},
      {"click Sheet.choice(1)", ok},
      {"choose Sheet.list 1", ok},
      {"choose Sheet.list 2", error("no such line")},
      {"choose Sheet.list -1", error("no such line")},
      {"choose Sheet.next 0", error("no such control")},
      {"type Sheet.field \"l\\u00efne one\\rtwo \\u20ac\\ud83d\\ude00 \\\"q\\\"\"", ok},
      {"type Sheet.text x", error("no such control")},
      {"click Sheet.inside", error("not enabled")},
      {"click Sheet.list", error("no such control")},
      {"click Other.next", error("not visible")},
      {"close Other", error("not visible")},
      {"answer OK", error("no message box")},
      {"answer Maybe", error("no message box")},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(answer(c.line), c.answer + "\n") << c.line;
  }
  EXPECT_EQ(log, "next text mark list1 ");
  EXPECT_EQ(sheet.mark.Value, 1);
  EXPECT_TRUE(sheet.choice(1).Value);
  EXPECT_EQ(sheet.field.Text.get(), "l\xEFne one\rtwo ?? \"q\"");
  EXPECT_EQ(answer("type Sheet.field 1500\nget Sheet.field.text"), "{\"ok\":true}\n{\"ok\":true,\"value\":\"1500\"}\n");
  EXPECT_EQ(answer("close Sheet"), "{\"ok\":true}\n{\"event\":\"unload\",\"form\":\"Sheet\"}\n");
}

TEST_F(ConsoleBench, FormsTellThatTheyComeAndGoAndAModalOneBlocksTheOthers) {
  sheet.next.OnClick = [this] { other.ShowModal(); };
  other.next.OnClick = [this] { other.Hide(); };
  EXPECT_EQ(answer("click Sheet.next\nforms\nclick Sheet.mark\nclick Other.next\nwait noform Other 0\nclick Sheet.mark"),
            lines(R"(
{"ok":true}
{"event":"show","form":"Other","modal":true}
{"ok":true,"value":[{"form":"Other","modal":true},{"form":"Sheet","modal":false}]}
{"ok":false,"error":"blocked by Other"}
{"ok":true}
{"event":"hide","form":"Other"}
{"ok":true}
{"ok":true}
)"));
}

TEST_F(ConsoleBench, AMessageBoxIsAnsweredWhileItHoldsTheProgram) {
  sheet.next.OnClick = [this] {
    const MessageButton button = host.showMessageBox(
        {.text = "Sure?\r\n\xFC", .title = "Warning", .icon = MessageIcon::Question, .buttons = MessageButtons::YesNo});
    sheet.text.Caption = button == MessageButton::No ? "no" : "yes";
    host.showMessage("/home/J\xC3\xBCrgen");
  };
  EXPECT_EQ(answer("click Sheet.next\nclick Sheet.mark\nclose Sheet\nanswer OK\nanswer Maybe\nanswer No\nget Sheet.text.caption\n"
                   "wait nomessagebox 0.5\nanswer OK\nwait nomessagebox 0",
                   2 * kSecond),
            lines(R"(
{"ok":true}
{"event":"messagebox","text":"Sure?\r\nü","title":"Warning","icon":"question","buttons":["Yes","No"]}
{"ok":false,"error":"message box is up"}
{"ok":false,"error":"message box is up"}
{"ok":false,"error":"no such button"}
{"ok":false,"error":"no such button"}
{"ok":true}
{"event":"messagebox","text":"/home/Jürgen","title":"Tolvex Firmlane","icon":"none","buttons":["OK"]}
{"ok":true,"value":"no"}
{"ok":false,"error":"timeout"}
{"ok":true}
{"ok":true}
)"));
}

TEST_F(ConsoleBench, ABoxThatComesUpBeforeAClickIsTakenUpCanBeAnswered) {
  Timer& timer = sheet.addTimer();
  timer.OnTimer = [&] {
    timer.stop();
    host.showMessage("tick");
  };
  timer.start(10);
  time.at(10 * kMillisecond, [this] { session.take("click Sheet.next"); });
  time.at(20 * kMillisecond, [this] { session.take("answer OK"); });
  run("", kSecond);
  EXPECT_THAT(taken(), testing::EndsWith("{\"ok\":true}\n"));
  EXPECT_FALSE(host.messageBox());
}

TEST_F(ConsoleBench, CommandsAreServedWhileAHandlerRunsForMinutes) {
  bool stop = false;
  sheet.next.OnClick = [&] {
    sheet.next.Disable();
    while (!stop) {
      queue.WaitEvents();
    }
    sheet.text.Caption = "done";
  };
  sheet.mark.OnClick = [&] { stop = true; };
  EXPECT_EQ(
      answer("click Sheet.next\nget Sheet.next.enabled\nclick Sheet.next\nsleep 90\nclick Sheet.mark\n"
             "wait Sheet.text.caption == \"done\" 1",
             100 * kSecond),
      "{\"ok\":true}\n{\"ok\":true,\"value\":false}\n{\"ok\":false,\"error\":\"not enabled\"}\n{\"ok\":true}\n{\"ok\":true}\n"
      "{\"ok\":true}\n");
}

TEST_F(ConsoleBench, WaitsLookAtThePathAndTellWhatItHoldsWhenTheyRunOut) {
  time.at(3 * kSecond, [this] { queue.post([this] { sheet.bar.Value = 5; }); });
  const std::string timeout = R"({"ok":false,"error":"timeout","value":)";
  EXPECT_EQ(answer("wait Sheet.bar.value >= 5 2.5", 2600 * kMillisecond), timeout + "0}\n");
  EXPECT_EQ(answer("wait Sheet.bar.value >= 5 2.5\nget Sheet.bar.value", 450 * kMillisecond),
            "{\"ok\":true}\n{\"ok\":true,\"value\":5}\n");
  sheet.list.Lines = {"a b", "c"};
  for (const Case& c : std::vector<Case>{
           {"wait Sheet.bar.value != 5 0", timeout + "5}"},
           {"wait Sheet.bar.value == 5.0 0", R"({"ok":true})"},
           {"wait Sheet.bar.value == \"5\" 0", timeout + "5}"},
           {"wait Sheet.list.lines == [\"a b\", \"c\"]  0", R"({"ok":true})"},
           {"wait Sheet.next == {\"visible\":true,\"enabled\":true,\"caption\":\"Next >>\"} 0", R"({"ok":true})"},
           {"wait Sheet.next.caption contains \">>\" 0", R"({"ok":true})"},
           {"wait Sheet.next.caption contains \"<<\" 0", timeout + "\"Next >>\"}"},
           {"wait RunState.GotId == true 0", timeout + "false}"},
           {"wait RunState.Nothing == true 0", R"({"ok":false,"error":"no such field"})"},
           {"wait form Other 0", R"({"ok":false,"error":"timeout"})"},
           {"wait noform Other 0", R"({"ok":true})"},
           {"wait form Nothing 0", R"({"ok":false,"error":"no such control"})"},
           {"wait nomessagebox 0", R"({"ok":true})"},
           {"wait end 0", R"({"ok":false,"error":"timeout"})"},
       }) {
    EXPECT_EQ(answer(c.line), c.answer + "\n") << c.line;
  }
}

TEST_F(ConsoleBench, TheProgramsEndAnswersWhateverWaits) {
  sheet.next.OnClick = [this] {
    host.showMessage("bye");
    throw ProgramEnded();
  };
  run("click Sheet.next\nanswer OK\nwait form Other 9\nget Sheet.next\nwait end 5\n# so long\nwait x\nnonsense\nquit");
  EXPECT_TRUE(ended);
  EXPECT_THAT(taken(), testing::EndsWith("{\"ok\":true}\n{\"event\":\"end\"}\n{\"ok\":false,\"error\":\"ended\"}\n"
                                         "{\"ok\":false,\"error\":\"ended\"}\n{\"ok\":true}\n{\"ok\":false,\"error\":\"ended\"}\n"
                                         "{\"ok\":false,\"error\":\"ended\"}\n{\"ok\":true}\n"));
  session.take("wait end 5");
  session.take("forms");
  EXPECT_EQ(taken(), "{\"ok\":true}\n{\"ok\":false,\"error\":\"ended\"}\n");
}

TEST_F(ConsoleBench, QuitEndsAHandlerThatRunsAndABoxThatHolds) {
  sheet.next.OnClick = [this] { host.showMessage("stay"); };
  run("click Sheet.next\nquit\nforms", kSecond);
  EXPECT_TRUE(ended);
  EXPECT_THAT(taken(), testing::EndsWith("{\"ok\":true}\n{\"event\":\"end\"}\n{\"ok\":false,\"error\":\"ended\"}\n"));
}

TEST_F(ConsoleBench, AScriptThatIsToStopAtAFailureSaysWhichOfItsLinesFailed) {
  session.stopAtFailure();
  sheet.text.Caption = "one";
  run("get MessageBox.text\n# line 47 of the record\n\nwait Sheet.text.caption == \"two\" 5\nclick Sheet.next", 10 * kSecond);
  EXPECT_TRUE(ended);
  EXPECT_EQ(session.failure(),
            "line 4 of the script (line 47 of the record), wait Sheet.text.caption == \"two\" 5: timeout; it holds \"one\"");
  EXPECT_THAT(taken(), testing::StartsWith("{\"ok\":true,\"value\":\"\"}\n{\"ok\":false,\"error\":\"timeout\""));
}

TEST_F(ConsoleBench, TheEndOfTheScriptComesAfterItsLastCommand) {
  session.take("sleep 2");
  session.takeEnd();
  run("", 3 * kSecond);
  EXPECT_TRUE(ended);
  EXPECT_EQ(queue.now(), 2 * kSecond);
  EXPECT_EQ(taken(), "{\"ok\":true}\n{\"event\":\"end\"}\n");
}

TEST(JsonTest, ANumberReadsBackFromItsOwnText) {
  for (const double number : {0.0, -0.1, 100000.0, 5e-324, -2.2250738585072014e-308, 1.7976931348623157e308}) {
    EXPECT_EQ(Json::parse(Json(number).text()), Json(number)) << number;
  }
}

}  // namespace
}  // namespace firmlane::test
