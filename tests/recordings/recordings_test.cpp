// Records of real runs, each played to its end: the program says the same words at the same places and sends the same bytes.
// tools/make-recordings makes them anew.
#include <gtest/gtest.h>

#include <deque>
#include <filesystem>

#include "replay/script.h"
#include "replay_stage.h"
#include "web/record_files.h"

namespace firmlane::test {
namespace {

std::vector<std::string> recordings() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(RECORDINGS)) {
    if (entry.path().extension() == ".txt") {
      names.push_back(entry.path().stem().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

struct Recordings : testing::TestWithParam<std::string> {
  static std::string text(const std::string& name) { return Files::readText(std::string(RECORDINGS "/") + name + ".txt"); }
};

/// Plays a record. How long a pass of a counting loop took on its computer is not in it: of the paces that there are, the one
/// that comes furthest is taken for its own.
std::string played(const sim::Recording& recording, const sim::Shelf& shelf) {
  constexpr Micros kQuickest = 30;
  constexpr Micros kSlowest = 330;
  constexpr Micros kStep = 20;  // a tick more or less in a reading's pause
  std::string difference;
  std::size_t furthest = 0;
  for (Micros pass = kQuickest; pass <= kSlowest; pass += kStep) {
    VirtualReplay replay(recording, shelf, pass);
    const std::string found = replay.play();
    if (found.empty()) {
      return found;
    }
    if (replay.reached() > furthest) {
      furthest = replay.reached();
      difference = found;
    }
  }
  return difference;
}

TEST_P(Recordings, ThePlayedRunSaysAndSendsTheSame) {
  const sim::Recording recording = sim::readRecording(text(GetParam()));
  EXPECT_TRUE(recording.complete);
  EXPECT_EQ(recording.dropped, 0U);
  const sim::Shelf contents = sim::shelfWith("");
  EXPECT_EQ(played(recording, contents), "");
}

INSTANTIATE_TEST_SUITE_P(Made, Recordings, testing::ValuesIn(recordings()), [](const auto& tested) {
  std::string name = tested.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

/// A short record to break.
constexpr const char* kGood =
    "Dear maker,\n> Firmlane record 1\r\n> program: Firmlane 5.0.9\n> 1.000000 show Form1\n> 2.000000 says Form1.lblTop "
    "\"a\\r\\xE9\"\n"
    "> 2.500000 open 3 9600 none\n> 3.000000 sent 3: 02 FF*3\n> 3.100000 heard 3: 80\n> end of record\nRegards\n";

TEST(RecordReader, ARecordComesOutOfAMailWhole) {
  const sim::Recording recording = sim::readRecording(kGood);
  ASSERT_EQ(recording.entries.size(), 5U);
  EXPECT_TRUE(recording.complete);
  EXPECT_EQ(recording.headOf("program"), "Firmlane 5.0.9");
  EXPECT_EQ(recording.entries[1].words.back(), "a\r\xE9");
  EXPECT_EQ(hex(recording.entries[3].bytes.first), "02 FF FF FF");
  EXPECT_EQ(recording.entries[4].line, 8U);
}

TEST(RecordReader, ABadRecordIsRefusedWithItsLine) {
  struct Case {
    std::string what;
    std::string by;
    const char* told;
  };
  for (const Case& c : {
           Case{"record 1", "record 2", "Line 2 of the record: it is of version 2, and this program reads version 1"},
           Case{"Firmlane record 1", "Some other log",
                "Line 10 of the record: no line says \"Firmlane record 1\": this is no record"},
           Case{"2.500000 open", "1.500000 open", "Line 6 of the record: its time lies before that of the line above"},
           Case{"open 3 9600", "opened 3 9600", "Line 6 of the record: there is no entry \"opened\""},
           Case{"open 3 9600 none", "open 17 9600 none", "Line 6 of the record: a port has a number from 1 to 16"},
           Case{"open 3 9600 none", "open 3", "Line 6 of the record: a word is missing"},
           Case{"show Form1", "show Form1 modal now", "Line 4 of the record: a word too many"},
           Case{"FF*3", "FF*4000000000", "Line 7 of the record: more bytes than a record holds"},
           Case{"FF*3", "FG", "Line 7 of the record: \"FG\" is not a number"},
           Case{"\\xE9\"", "\\xE", "Line 5 of the record: a text holds an escape that is none"},
           Case{"\\xE9\"", "", "Line 5 of the record: a text does not end"},
           Case{"3.100000", "3.1", "Line 8 of the record: \"3.1\" is not a time"},
           Case{"> 3.000000 sent 3:", "sent 3:",
                "Line 7 of the record: it does not begin with a time; has a mail broken a line in two?"},
       }) {
    std::string text = kGood;
    text.replace(text.find(c.what), c.what.size(), c.by);
    try {
      static_cast<void>(sim::readRecording(text));
      ADD_FAILURE() << c.by << " was read";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.description(), c.told);
    }
  }
  std::string cut = kGood;
  cut.resize(cut.find("> end of"));
  EXPECT_FALSE(sim::readRecording(cut).complete);
}

TEST(RecordReader, WhatIsTooMuchEndsInAMessageSoon) {
  struct Case {
    std::string line;
    int times;
    const char* told;
  };
  for (const Case& c : {
           Case{"1.000000 closed 3\n", 1'000'000,
                "Line 100002 of the record: more than 100000 entries are no record of a few minutes"},
           Case{"1.000000 heard 3: FF*65536\n", 1000, "Line 258 of the record: more bytes than a record holds"},
           Case{"1.000000 says Form1.lblTop \"" + std::string(300'000, 'x') + "\"\n", 100,
                "Line 2 of the record: it is longer than a whole record"},
       }) {
    std::string text = "Firmlane record 1\n";
    for (int i = 0; i < c.times; ++i) {
      text += c.line;
    }
    try {
      static_cast<void>(sim::readRecording(text));
      ADD_FAILURE() << "read: " << c.told;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.description(), c.told);
    }
  }
}

/// Edits of a real record, as changes of a page or of the wire would show.
TEST(RecordPlayer, ADifferenceIsNamedWithItsPlace) {
  struct Case {
    const char* was;
    const char* is;
    const char* told;
  };
  const std::string text = Files::readText(RECORDINGS "/late-verdict.txt");
  const sim::Shelf contents = sim::shelfWith("");
  for (const Case& c :
       {Case{"What would you like to do?", "What would you like?", "now: says Form1.lblTop \"What would you like to do?\""},
        Case{"00 1E 01 1F", "00 1E 01 1E", "byte 7 of 9 is 1F now, and was 1E"},
        Case{"open 3 19200", "open 3 57600", "now: open 3 19200 none"},
        Case{"click Form1.VRColdButton", "click Form1.VRColderButton", "no such control"},
        Case{"click Form1.VRColdButton", "click Form1.Command3", "not enabled"}}) {
    std::string edited = text;
    ASSERT_NE(edited.find(c.was), std::string::npos) << c.was;
    edited.replace(edited.find(c.was), std::string(c.was).size(), c.is);
    const sim::Recording recording = sim::readRecording(edited);
    VirtualReplay replay(recording, contents, 30);
    const std::string difference = replay.play();
    EXPECT_NE(difference.find(c.told), std::string::npos) << difference;
    EXPECT_TRUE(difference.starts_with("line ")) << difference;
  }
}

/// The directory of the customer's computer is in the words of a page, and decides neither here nor there.
TEST(RecordPlayer, ARecordFromAWindowsComputerPlaysOnAnyOther) {
  std::string text = Files::readText(RECORDINGS "/silent-unit.txt");
  const std::string directory = R"(C:\\Users\\J\xC3\xB6rg\\Firmlane)";
  for (std::size_t at = 0; (at = text.find("/firmlane", at)) != std::string::npos; at += directory.size()) {
    text.replace(at, std::string("/firmlane").size(), directory);
  }
  const sim::Recording recording = sim::readRecording(text);
  EXPECT_EQ(played(recording, sim::shelfWith("")), "");
  EXPECT_EQ(sim::consoleScript(recording).find("Users"), std::string::npos);
  EXPECT_EQ(recording.asInItsDirectory("box \"Cannot write /tmp/x/wls.bin in /tmp/x\"", "/tmp/x"),
            "box \"Cannot write " + directory + R"(\\wls.bin in )" + directory + "\"");
}

TEST(RecordPlayer, TheScriptOfARecordWaitsForWhatItsUserSaw) {
  const std::string script = sim::consoleScript(sim::readRecording(
      "Firmlane record 1\ndirectory: /home/ann/firmware\n1.000000 show Form1\n1.000000 says Form1.lblTop \"a\\rb\"\n"
      "1.000000 says Form1.lblPage \"0\"\n2.000000 click Form1.Command3\n"
      "2.100000 says Form1.lblTop \"in: /home/ann/firmware, as ever\"\n3.000000 says Form1.lblTop \"gone in a wink\"\n"
      "3.100000 says Form1.lblTop \"stays\"\n9.000000 box none \"t\" \"COM 3 (/dev/ttyUSB0) has gone\" OK\n"
      "9.500000 answer OK\n9.600000 gone Form1.lblTop\n20.000000 heard 3: 80\nend of record\n"));
  EXPECT_EQ(script,
            "# line 5 of the record\nwait Form1.lblPage.caption == \"0\" 21\n"
            "# line 6 of the record\nwait Form1.Command3.enabled == true 21\nclick Form1.Command3\n"
            "# line 9 of the record\nwait Form1.lblTop.caption == \"stays\" 21\n"
            "# line 11 of the record\nwait MessageBox.text contains \" has gone\" 27\nanswer OK\nsleep 15\n");
  EXPECT_EQ(sim::consoleScript(sim::readRecording("Firmlane record 1\ndirectory: /home/ann\n1.000000 says Form1.lblTop "
                                                  "\"Saving in: /home/ann\"\n")),
            "# line 3 of the record\nwait Form1.lblTop.caption contains \"Saving in: \" 21\nsleep 2\n");
}

/// A port seen from outside, and a program that does with it what a test says.
struct LineStage : sim::ReplayStage {
  VirtualTime time;
  std::deque<std::string> done;  // with the port, as the record says it
  std::string told;              // to the program

  [[nodiscard]] Micros now() const override { return time.now(); }
  void after(Micros span, std::function<void()> action) override { time.after(span, std::move(action)); }
  std::optional<std::string> perform(const sim::Entry& entry) override {
    told += entry.text.substr(entry.text.find(':') + 1);
    return std::nullopt;
  }
  bool takes(const sim::Entry& entry) override {
    if (done.empty() || done.front() != entry.text) {
      return false;
    }
    done.pop_front();
    return true;
  }
  [[nodiscard]] std::string movedOn(int /*port*/) const override { return done.empty() ? "" : done.front(); }
};

/// How often a question is repeated until its answer is there, and which of two comes first, is up to the computer.
TEST(RecordPlayer, AReadingInAnotherRhythmIsTheSameReading) {
  const std::string reset = "02 00 00 00 72 72 80 ";
  const std::string who = "02 00 00 00 01 01 80 ";
  const std::string versions = "02 00 00 00 5E 5E 80 ";
  const std::string text =
      "Firmlane record 1\n1.000000 open 3 57600 none\n1.100000 sent 3: " + reset + reset + who + "\n1.120000 heard 3: 16 80\n" +
      "1.200000 sent 3: " + versions + "\n1.220000 heard 3: 5F 80\n1.300000 sent 3: " + versions +
      "\n1.320000 heard 3: 5F 80\n1.400000 closed 3\n1.500000 open 3 9600 none\n1.600000 sent 3: 1E\nend of record\n";
  const sim::Recording recording = sim::readRecording(text);
  struct Case {
    std::vector<std::string> acts;  // what the program does, 50 ms apart
    const char* told;
    const char* difference;
  };
  const std::string open = "open 3 57600 none";
  const std::string again = "open 3 9600 none";
  for (const Case& c : {
           Case{{open, reset + reset + who, versions, versions, "closed 3", again, "1E"}, " 16 80 5F 80 5F 80", ""},
           Case{{open, who, who + reset, versions, "closed 3", again, "1E"}, " 16 80 5F 80", ""},
           Case{{open, reset, who, versions + who, versions, who, "closed 3", again, "1E"}, " 16 80 5F 80 5F 80", ""},
           Case{{open, who, "closed 3"}, " 16 80", "line 5, 1.200000 s, the record has: sent 3: " /* nothing was read */},
           Case{{open, who, versions, "closed 3", again, "1F"}, " 16 80 5F 80", "line 11, "},
           Case{{open, who, versions, "closed 3", "1E"}, " 16 80 5F 80", "line 10, "},
           Case{{open, "1E"}, "", "line 3, "},
       }) {
    LineStage stage;
    sim::Replay replay(recording, stage, sim::ReplayPart::LineAndWeb);
    replay.start();
    for (const std::string& act : c.acts) {
      const bool toPort = act.starts_with("open") || act.starts_with("closed");
      toPort ? stage.done.push_back(act) : replay.hear(3, bytes(act));
      replay.look();
      stage.time.sleep(stage.time.now() + 50 * kMillisecond);
      stage.time.poll();
      replay.look();
    }
    EXPECT_EQ(stage.told, c.told);
    EXPECT_TRUE(replay.difference().starts_with(c.difference)) << replay.difference();
    EXPECT_EQ(replay.difference().empty(), *c.difference == '\0') << replay.difference();
    EXPECT_TRUE(replay.over());
  }
}

}  // namespace
}  // namespace firmlane::test
