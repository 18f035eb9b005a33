#include "catalogue_fixture.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

struct Downloads : CatalogueTest {
  Downloads() {
    product("WS");
    state.LwxSystems[0].SystemDir = "s31";
    state.LwxSystems[1].SystemDir = "s30";
    state.VrcSystems[0].SystemDir = "v71";
    for (int i = 0; i < 12; ++i) {
      form1.List1.AddItem("line");
      lists.FirmwareUrls[static_cast<std::size_t>(i)] = "http://h/a/b/extra" + std::to_string(i) + ".bin\r";
    }
    form1.List1.Show();
  }

  void firmware(int line) {
    form1.List1.ListIndex = line;
    form1.Timer1.start(100);
    download.GetFirmware2();
  }
  void software(const std::string& location) {
    form1.List1.ListIndex = 0;
    lists.SoftwareUrls[0] = location;
    download.GetSoftware();
  }
  /// Names of the files in the program's directory.
  [[nodiscard]] std::vector<std::string> listing() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(Downloads, EachLineHasItsUrlAndItsName) {
  struct Case {
    const char* product;
    bool older;
    int system;
    int line;
    const char* url;
    const char* name;
  };
  for (const Case& c : {Case{"WS", false, 0, 0, "http://maker.example/LWX/system/s31/wls.bin", "wls.bin"},
                        Case{"WS", false, 1, 1, "http://maker.example/LWX/system/s30/hubSL.s19", "HUBSL.s19"},
                        Case{"WS", true, 0, 2, "http://maker.example/LWX/system/s31/RFSL.s19", "RFSL.s19"},
                        Case{"WS", false, 0, 3, "http://maker.example/LWX/system/s31/FNTLCDc.s19", "FNTLCDc.s19"},
                        Case{"VC", false, 0, 0, "http://maker.example/Velarc2/v71/vrc2.bin", "vrc2.bin"},
                        Case{"VC", false, 0, 1, "http://maker.example/Velarc2/v71/vrc2hub.s19", "vrc2hub.s19"},
                        Case{"VC", false, 0, 2, "http://maker.example/Velarc2/v71/vrc2fnt.s19", "vrc2fnt.s19"},
                        Case{"VC", false, 0, 3, "http://maker.example/Velarc2/v71/vrc1.bin", "vrc1.bin"},
                        Case{"VC", true, 0, 7, "http://h/a/b/extra7.bin", "vrc.bin"},
                        Case{"WS", false, 0, 4, "http://h/a/b/extra4.bin", "extra4"},
                        Case{"VC", false, 0, 5, "http://h/a/b/extra5.bin", "extra5"}}) {
    SCOPED_TRACE(c.url);
    directory.write("LWXSys.lwx", std::string(kSystemRowBytes, 'x'));
    product(c.product, c.older);
    state.SelectedSystem = static_cast<std::int16_t>(c.system);
    http.answer(c.url, c.url, c.line % 2 == 0);
    wizard.setBar(0);
    firmware(c.line);
    EXPECT_EQ(http.requests().back(), c.url);
    EXPECT_EQ(directory.read(c.name), c.url);
    EXPECT_TRUE(download.DownloadDone);
    EXPECT_EQ(form1.ProgressBar1.Value, 100) << "also of a file whose length nobody has told";
    EXPECT_EQ(directory.read("LWXSys.lwx").front(), std::string(c.product) == "WS" && c.line < 4 ? '\0' : 'x')
        << "a file that came by itself makes no set of what lies there";
  }
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(Downloads, TheEndOfADownloadStandsOnThePage) {
  state.InAutoWizard = true;
  http.answer(maker("/LWX/system/s31/wls.bin"),
              {.body = std::string(1024, 'a'), .headers = {{"content-length", "1024"}}, .delay = kSecond});
  wizard.setBar(50);
  supervision.BarValue = 50;
  after(kSecond / 2, [&] {
    EXPECT_EQ(std::tuple(int{form1.ProgressBar1.Value}, int{frmAuto.Progress1.Value}, int{supervision.BarValue}),
              std::tuple(0, 0, 0));
    EXPECT_TRUE(supervision.SlowBar);
    EXPECT_FALSE(form1.List1.Visible || form1.Timer1.enabled());
  });
  std::vector<std::string> texts;
  screen.onChange = [&](Control& control) {
    if (&control == &form1.lblProgressInfo && (texts.empty() || texts.back() != info())) {
      texts.push_back(info());
    }
  };
  firmware(0);
  EXPECT_THAT(texts, ElementsAre("", "Downloaded 512 bytes (51%)", "Downloaded 1024 bytes (100%)"));
  EXPECT_EQ(top(), "Finished downloading firmware!\r\rClick on Next to Continue");
  EXPECT_EQ(form1.ProgressBar1.Value, 100);
  EXPECT_EQ(frmAuto.Progress1.Value, 100);
  EXPECT_TRUE(form1.lblProgressInfo.Visible);
  EXPECT_FALSE(form1.List1.Visible);
  EXPECT_FALSE(form1.Timer1.enabled());
  EXPECT_FALSE(supervision.SlowBar);
  EXPECT_EQ(download.ContentLength, 1024);
  EXPECT_EQ(listing(), std::vector<std::string>{"wls.bin"});
}

TEST_F(Downloads, BodiesOfAnySizeAndAnyStatedLength) {
  struct Case {
    const char* length;  // null for a server that states none
    std::size_t size;
    const char* info;
    const char* failure = "";
  };
  for (const Case& c :
       {Case{"0", 0, "before"}, Case{nullptr, 700, "before"}, Case{"-5", 700, "before"}, Case{"many", 700, "before"},
        Case{"700 bytes", 700, "before"}, Case{"99999999999999999999", 700, "before"}, Case{"1", 1, "Downloaded 1 bytes (100%)"},
        Case{"10", 700, "Downloaded 700 bytes (100%)"}, Case{"8388608", 8U << 20U, "Downloaded 8388608 bytes (100%)"},
        Case{"2147483647", 700, "Downloaded 700 bytes (1%)", "700 of 2147483647"},
        Case{"2147483648", 700, "before", "700 of 2147483648"}, Case{" 1400 ", 700, "Downloaded 700 bytes (51%)", "700 of 1400"},
        Case{"701, 701", 700, "Downloaded 700 bytes (100%)", "700 of 701"},
        Case{"100", 0, "Downloaded 0 bytes (0%)", "0 of 100"}}) {
    SCOPED_TRACE(c.length == nullptr ? "none" : c.length);
    ScriptedAnswer answer{.body = std::string(c.size, 'b')};
    if (c.length != nullptr) {
      answer.headers["content-length"] = c.length;
    }
    http.answer(maker("/LWX/system/s31/wls.bin"), answer);
    form1.lblProgressInfo.Caption = "before";
    directory.write("wls.bin", std::string("old"));
    firmware(0);
    EXPECT_EQ(info(), c.info);
    const std::string failure = c.failure;
    EXPECT_EQ(download.DownloadDone, failure.empty());
    EXPECT_EQ(directory.read("wls.bin"), failure.empty() ? std::string(c.size, 'b') : "old");
    const std::string told = "!Error trying download firmware: The server sent only " + failure + " bytes (#62)";
    EXPECT_EQ(boxes(), failure.empty() ? std::vector<std::string>() : std::vector{told});
  }
}

TEST_F(Downloads, AStatusThatIsNoSuccessIsTold) {
  state.InVrcAutoWizard = true;
  for (const auto& [status, reason, words] : {std::tuple{200, "OK", ""},
                                              {206, "Partial Content", ""},
                                              {404, "Not Found", "caution: The server answered 404 Not Found for hubSL.s19"},
                                              {500, "", "caution: The server answered 500 for hubSL.s19"},
                                              {302, "Found", "caution: The server answered 302 Found for hubSL.s19"}}) {
    wizard.clearOutcome();
    http.answer(maker("/LWX/system/s31/hubSL.s19"), {.body = "<html>", .status = status, .reason = reason});
    firmware(1);
    EXPECT_EQ(outcome(form1), words);
    EXPECT_EQ(outcome(frmVRCAuto), words);
    EXPECT_EQ(directory.read("HUBSL.s19"), "<html>");
    EXPECT_TRUE(download.DownloadDone);
  }
}

TEST_F(Downloads, AFailedTransferLeavesTheOldFileAndSaysSo) {
  const std::string url = maker("/LWX/system/s31/wls.bin");
  directory.write("wls.bin", std::string("old"));
  http.answer(url, {.body = "half", .failure = Failure(2, "Connection closed")});
  firmware(0);
  EXPECT_THAT(boxes(), ElementsAre("!Error trying download firmware: Connection closed (#2)"));
  EXPECT_EQ(state.ErrorText, "Error trying download firmware: Connection closed (#2)");
  EXPECT_EQ(outcome(form1), "failure: " + state.ErrorText);
  EXPECT_FALSE(download.DownloadDone);
  EXPECT_FALSE(supervision.SlowBar);
  EXPECT_FALSE(form1.Timer1.enabled());

  http.answer(url, {.delay = kForever});
  firmware(0);
  EXPECT_THAT(boxes(), ElementsAre("!Error trying download firmware: The request has timed out (#12002)"));
  EXPECT_EQ(directory.read("wls.bin"), "old");

  // The directory cannot be written to, or something stands in the way of the name.
  std::filesystem::create_directory(directory.path() / "wls.bin.part");
  http.answer(url, "new");
  firmware(0);
  EXPECT_THAT(boxes(), ElementsAre(StartsWith("!Error trying download firmware: Something else has the name of a file ")));
  std::filesystem::remove(directory.path() / "wls.bin.part");
  std::filesystem::remove(directory.path() / "wls.bin");
  std::filesystem::create_directories(directory.path() / "wls.bin" / "x");
  firmware(0);
  EXPECT_THAT(boxes(), ElementsAre(StartsWith("!Error trying download firmware: ")));
  EXPECT_FALSE(download.DownloadDone);
  EXPECT_EQ(listing(), std::vector<std::string>{"wls.bin"});
}

TEST_F(Downloads, WhatCannotBeAskedForIsToldAtOnce) {
  firmware(-1);
  EXPECT_THAT(boxes(), ElementsAre("!Error trying download firmware: The list has no entry number -1 (#9)"));
  EXPECT_FALSE(form1.Timer1.enabled());
  for (int i = 0; i < 12; ++i) {
    form1.List1.AddItem("line");
  }
  firmware(21);
  EXPECT_THAT(boxes(), ElementsAre("!Error trying download firmware: The list has no entry number 21 (#9)"));
  for (const int system : {-1, 11}) {
    state.SelectedSystem = static_cast<std::int16_t>(system);
    firmware(0);
    EXPECT_THAT(boxes(),
                ElementsAre("!Error trying download firmware: There is no system number " + std::to_string(system) + " (#9)"));
  }
  EXPECT_TRUE(form1.List1.Visible);
  EXPECT_THAT(http.requests(), IsEmpty());
}

TEST_F(Downloads, NamesOutOfAListThatReachBeyondTheirPlaceAreRefused) {
  const std::pair<const char*, std::vector<std::string>> refused[] = {
      {"The list names no file to download",
       {"", "setup.exe", "http://h/a/setup.exe", "http://h/a/b/.exe", "http://h/a/b/setup.EXE"}},
      {"Not a name for a file in the program's directory",
       {"http://h/a/b/c/setup.exe", "http://h/a/b/..\\setup.exe", "http://h/a/b/a..exe", "http://h/a/b/.hidden.exe",
        "http://h/a/b/C:setup.exe", "http://h/a/b/set\nup.exe", "http://h/a/b/set\x7Fup.exe", "http://h/a/b/con.exe",
        "http://h/a/b/LPT9.exe", "http://h/a/b/com0.exe", "http://h/a/b/" + std::string(116, '?') + ".exe",
        "http://h/a/b/x" + std::string(30000, '/') + ".exe"}},
      {"The program uses a file of that name itself", {"http://h/a/b/firmlane.exe", "http://h/a/b/FirmLane-Console.exe"}},
  };
  for (const auto& [why, locations] : refused) {
    for (const std::string& location : locations) {
      software(location);
      const std::vector<std::string> told = boxes();
      ASSERT_THAT(told, testing::SizeIs(1)) << location;
      EXPECT_THAT(told.front(), StartsWith(std::string("!Error trying download firmware: ") + why + ": "));
      EXPECT_EQ(told.front().find("... (#") != std::string::npos, location.size() > 1000) << "what is told of a name";
      EXPECT_LE(std::ranges::count(told.front(), '/'), 120);
      EXPECT_FALSE(download.DownloadDone);
      if (location.size() > 1000) {
        EXPECT_EQ(std::ranges::count(state.ErrorText, '/'), 119);
      }
    }
  }
  for (const char* name : {"ports", "Firmlane", "nul", "AUX", "prn", "firmlane-simulator", "license"}) {
    lists.FirmwareUrls[4] = "http://h/a/b/" + std::string(name) + ".bin";
    firmware(4);
    EXPECT_THAT(boxes(), testing::SizeIs(1)) << name;
  }
  EXPECT_THAT(http.requests(), IsEmpty());
  EXPECT_THAT(listing(), IsEmpty());
  for (const char* name : {"comet", "coma", "com10", "lpt", "xcon"}) {  // devices are called otherwise
    http.answer("http://h/a/b/" + std::string(name) + ".exe", "MZ");
    software("http://h/a/b/" + std::string(name) + ".exe");
    EXPECT_TRUE(directory.has(std::string(name) + ".exe"));
  }
}

TEST_F(Downloads, SoftwareComesUnderItsOwnNameAndKeepsNextDead) {
  bool nextWasDead = false;
  http.answer("http://h/a/b/Remote 3.0 setup.exe", "MZ");
  after(20 * kMillisecond, [&] { nextWasDead = !form1.Command3.Enabled; });
  software("http://h/a/b/Remote 3.0 setup.exe\r");
  EXPECT_TRUE(nextWasDead);
  EXPECT_TRUE(form1.Command3.Enabled);
  EXPECT_EQ(top(), "Finished downloading software!\r\rClick on Next to Continue");
  EXPECT_EQ(directory.read("Remote 3.0 setup.exe"), "MZ");
  EXPECT_EQ(download.DownloadPath, (directory.path() / "Remote 3.0 setup.exe").string());
  software("http://h/a/b/other.exe");
  EXPECT_THAT(boxes(), ElementsAre("!Error trying download firmware: Cannot connect to the server (#12029)"));
  EXPECT_FALSE(download.DownloadDone);
  EXPECT_TRUE(form1.Command3.Enabled);
}

TEST_F(Downloads, ExitEndsTheProgramFromInsideADownload) {
  http.answer(maker("/LWX/system/s31/wls.bin"), std::string(5000, 'a'));
  form1.Command2.OnClick = [] { throw ProgramEnded(); };
  screen.onChange = [&](Control& control) {
    if (&control == &form1.lblProgressInfo && info() == "Downloaded 1024 bytes (21%)") {
      EXPECT_TRUE(directory.has("wls.bin.part"));
      host.click(form1.Command2);
    }
  };
  EXPECT_THROW(firmware(0), ProgramEnded);
  EXPECT_THAT(listing(), IsEmpty());
}

TEST_F(Downloads, StatesOutsideOfADownloadGoByUnseen) {
  directory.write("wls.bin", std::string("old"));
  download.DownloadPath = files.path("wls.bin");
  for (const int State : {3, 5, 6, 8, 11, 12, 0}) {
    download.Inet1_StateChanged(State);
  }
  EXPECT_EQ(directory.read("wls.bin"), "old");
  EXPECT_EQ(download.RegisterState, 0);
  download.Registering = true;
  for (const auto& [client, registers] : {std::pair{3, true}, {5, true}, {6, true}, {8, false}, {11, false}, {12, true}}) {
    download.RegisterState = 1;
    download.Inet1_StateChanged(client);
    EXPECT_EQ(download.RegisterState, registers ? 5 : 1) << client;
  }
  EXPECT_EQ(directory.read("wls.bin"), "old");
}

}  // namespace
}  // namespace firmlane::test
