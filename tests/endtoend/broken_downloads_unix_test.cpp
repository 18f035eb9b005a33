// Downloads that break off and programs that are killed, at any place and any moment: what is on disk is whole, and what it is
// called is what it is. FIRMLANE_RUNS asks for more runs than the tests do by themselves.
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <random>

#include "process.h"
#include "raw_server.h"

namespace firmlane::test {
namespace {

using testing::HasSubstr;

constexpr const char* kSetNames[] = {"wls.bin", "HUBSL.s19", "RFSL.s19", "FNTLCDc.s19"};

int runs(int byItself) {
  const char* more = std::getenv("FIRMLANE_RUNS");
  return more == nullptr ? byItself : std::stoi(more);
}

struct BrokenDownloads : testing::Test {
  BrokenDownloads() {
    server.onRequest([](const std::string& target) { return RawServer::whole(answer(target)); });
  }
  /// What the maker's server has: lists, and sets whose files say which set they belong to.
  static std::string answer(const std::string& target) {
    if (target == "/LWX/updateV4.txt") {
      return "#\r\nWLS|DSP V2.31-x|http://h/a/b/one.bin\r\nREMOTE|Remote V3|http://h/a/b/setup.exe\r\n"
             "SYSTEM|3.1|1 May|note|2.31|2.12|1.17|2.23|s31\r\nSYSTEM|3.0|1 April|note|2.30|2.11|1.16|2.22|s30\r\n";
    }
    const std::size_t set = target.find("/s3");
    const std::string version = set == std::string::npos ? "?" : std::string("3.") + target[set + 3];
    std::string body;
    while (body.size() < 20000) {
      body += version + " " + target + "\n";
    }
    return body;
  }
  /// The older Velarc's list holds full URLs of this server.
  void serveOlderVelarc() {
    server.onRequest([url = server.url()](const std::string& target) {
      return RawServer::whole(target == "/Velarc/update.txt"
                                  ? "#\r\nVRC|DSP V5.03-x|" + url + "/a/b/vrc.bin\r\nREMOTE|R V3|http://h/a/b/s.exe\r\n"
                                  : answer(target));
    });
  }
  [[nodiscard]] QStringList options() const {
    const QString url = QString::fromStdString(server.url());
    return {"--dir", directory.path(), "--server", url, "--registration-server", "http://127.0.0.1:1", "--time-scale", "10"};
  }
  [[nodiscard]] std::string file(const QString& name) const {
    QFile file(directory.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }
  /// From the welcome to the list of systems, one of them picked: the next Next downloads it.
  static void pickSystem(Process& console, int system) {
    for (const char* line : {"click Form1.Command3", "click Form1.LWXButton", "click Form1.Command3", "wait form frmAuto 60",
                             "click frmAuto.btnNext", "click frmAuto.ChkOffline", "click frmAuto.btnNext",
                             "wait frmAuto.VersionList.visible == true 600"}) {
      console.must(line);
    }
    console.must("choose frmAuto.VersionList " + QString::number(system));
    console.must("wait RunState.AutoPage == 3 60");
  }
  /// "3.1" when row 0 and all images say so, "" when there is nothing at all, else what each says.
  [[nodiscard]] std::string setOnDisk() const {
    std::vector<std::string> told = {file("LWXSys.lwx").substr(0, 3)};
    for (const char* name : kSetNames) {
      const std::string content = file(name);
      const bool whole = content.empty() || content == answer(content.substr(4, content.find('\n') - 4));
      told.push_back(whole ? content.substr(0, 3) : "a piece");
    }
    const std::string row = told.front() == std::string(3, '\0') ? "" : told.front();
    return std::all_of(told.begin() + 1, told.end(), [&row](const std::string& one) { return one == row; })
               ? row
               : testing::PrintToString(told);
  }

  QTemporaryDir directory;
  RawServer server;
};

TEST_F(BrokenDownloads, NothingShortIsEverStoredAndNothingIsAskedForTwice) {
  serveOlderVelarc();
  Process console("firmlane-console", options());
  for (const char* line :
       {"click Form1.Command3", "click Form1.VRColdButton", "wait RunState.WizardPage == 0 60", "click Form1.Option1(0)",
        "click Form1.Command3", R"(wait Form1.lblStatus.caption contains "has received a list" 600)", "click Form1.Command3",
        "wait Form1.txtEmail.visible == true 600", "click Form1.Command3", "wait RunState.WizardPage == 3 600",
        "choose Form1.List1 0"}) {
    console.must(line);
  }
  QFile old(directory.filePath("vrc.bin"));
  old.open(QIODevice::WriteOnly);
  old.write("old");
  old.close();

  const int before = server.requests();
  const int tries = runs(300);
  std::mt19937 random(7);
  const pid_t program = static_cast<pid_t>(console.pid());
  for (int i = 0; i < tries; ++i) {
    const std::string body = answer("/a/b/vrc.bin");
    const bool inPieces = random() % 3 == 0;
    const std::string head =
        std::string("HTTP/1.1 200 OK\r\n") +
        (inPieces ? "Transfer-Encoding: chunked\r\n\r\n4e20\r\n" : "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n");
    const std::string whole = head + body.substr(0, 20000);
    const std::size_t place = random() % 4 == 0 ? random() % (head.size() + 1) : random() % whole.size();
    RawServer::Answer answer{.bytes = whole.substr(0, place), .reset = random() % 4 == 0};
    if (random() % 2 == 0) {  // the program stands still while the answer and the end of the connection come
      answer.before = [program] { ::kill(program, SIGSTOP); };
      answer.after = [program] {
        ::usleep(2000);
        ::kill(program, SIGCONT);
      };
    }
    server.onRequest([answer](const std::string&) { return answer; });
    SCOPED_TRACE("try " + std::to_string(i) + ": " + std::to_string(place) + " bytes" + (inPieces ? " in pieces" : ""));
    console.must("click Form1.Command3");
    console.must("wait messagebox 600");
    console.must("answer OK");
    console.must("wait Form1.Command3.enabled == true 60");
    EXPECT_EQ(file("vrc.bin"), "old");
    EXPECT_EQ(server.requests() - before, i + 1) << "asked for again";
    if (HasFailure()) {
      break;
    }
  }
  EXPECT_THAT(console.events().join('\n').toStdString(), HasSubstr("Error trying download firmware: "));
  EXPECT_EQ(console.must("get RunState.WizardPage").toInt(), 3) << "the list is there, to try again";
  EXPECT_TRUE(console.must("get Form1.List1.visible").toBool());

  serveOlderVelarc();
  console.must("click Form1.Command3");
  console.must("wait RunState.WizardPage == 4 600");
  EXPECT_EQ(file("vrc.bin"), answer("/a/b/vrc.bin"));
}

TEST_F(BrokenDownloads, AKilledProgramLeavesTheOldSetOrTheNewOne) {
  std::mt19937 random(11);
  std::map<std::string, int> found;
  const int kills = runs(30);
  for (int i = 0; i <= kills; ++i) {
    Process console("firmlane-console", options());
    console.must("get RunState.WizardPage");  // it is up, and has put right what there was
    const std::string set = setOnDisk();
    EXPECT_THAT(set, testing::AnyOf("", "3.0", "3.1")) << "after kill " << i;
    if (HasFailure()) {
      break;
    }
    ++found[set];
    // Each time the other set, so that the two can be told apart.
    pickSystem(console, set == "3.1" ? 1 : 0);
    const int first = server.requests() + 1;
    console.write("click frmAuto.btnNext");
    ASSERT_TRUE(server.awaitRequests(first));
    constexpr unsigned kLongest = 300000;  // us; a whole set takes about half of it
    ::usleep(static_cast<useconds_t>(random() % kLongest));
    ::kill(static_cast<pid_t>(console.pid()), SIGKILL);
    console.finish();
  }
  for (const auto& [set, times] : found) {
    std::printf("%s: %d times\n", set.empty() ? "no set" : set.c_str(), times);
  }
}

TEST_F(BrokenDownloads, TwoProgramsDoNotMixTheirSets) {
  std::atomic<bool> hold = true;
  server.onRequest([&hold](const std::string& target) {
    RawServer::Answer answer = RawServer::whole(BrokenDownloads::answer(target));
    if (target == "/LWX/system/s31/RFSL.s19" && hold) {
      answer.bytes = answer.bytes.substr(0, 5000);
      answer.after = [&hold] {
        while (hold) {
          ::usleep(1000);
        }
      };
    }
    return answer;
  });
  RawServer another;
  another.onRequest([](const std::string& target) { return RawServer::whole(answer(target)); });
  Process first("firmlane-console", options());
  pickSystem(first, 0);
  QStringList others = options();
  others.replaceInStrings(QString::fromStdString(server.url()), QString::fromStdString(another.url()));
  Process second("firmlane-console", others);
  pickSystem(second, 1);
  const int listed = server.requests();
  first.write("click frmAuto.btnNext");
  ASSERT_TRUE(server.awaitRequests(listed + 3));
  second.must("click frmAuto.btnNext");
  second.must("wait messagebox 600");
  EXPECT_THAT(second.events().last().toStdString(), HasSubstr("Another program is downloading firmware into "));
  second.must("answer OK");
  second.must("wait frmAuto.btnNext.enabled == true 60");
  EXPECT_EQ(setOnDisk(), "");

  ::kill(static_cast<pid_t>(first.pid()), SIGKILL);
  first.finish();
  hold = false;
  second.must("click frmAuto.btnNext");
  second.must("wait RunState.AutoPage == 4 600");
  EXPECT_EQ(setOnDisk(), "3.0") << "the one that was killed keeps nobody out, and leaves nothing";
}

}  // namespace
}  // namespace firmlane::test
