// The program's catalogue over its real HTTP client against the simulated web server, faults included.
#include <gmock/gmock.h>

#include <QTimer>

#include "catalogue/registration.h"
#include "platform/qt/qt_event_source.h"
#include "platform/qt/qt_http_client.h"
#include "units/firmware.h"
#include "web/web_server.h"
#include "world.h"

namespace firmlane::test {
namespace {

using sim::WebFault;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// Presses the first button of every box and remembers its text.
class AnsweringScreen : public ScriptedScreen {
 public:
  using ScriptedScreen::ScriptedScreen;
  void messageBoxShown(const MessageBox& box) override {
    boxes.push_back(box.text);
    QTimer::singleShot(0, [this, button = answer.value_or(buttonsOf(box.buttons).front())] { press(button); });
  }
  std::vector<std::string> boxes;
  std::optional<MessageButton> answer;
};

struct Web : testing::Test {
  Web() {
    screen.press = [this](MessageButton button) { host.answer(button); };
    form1.Load();
    state.ProductCode = "WS";
  }
  void product(const std::string& code, bool older) {
    state.ProductCode = code;
    state.OldVelarc = older;
  }
  void fetch() {
    form1.List1.Clear();
    form1.lblStatus.Caption = "";
    lists.clearUrls();
    lists.GetUpdateText();
  }
  void firmware(int line) {
    form1.List1.ListIndex = line;
    download.GetFirmware2();
  }
  [[nodiscard]] std::string image(const std::string& name) const { return Files::readText(files.path(name)); }

  QtEventSource source;
  EventQueue queue{source, source};
  VirtualTime unused;
  AnsweringScreen screen{unused};
  FormHost host{queue, screen};
  TemporaryDirectory directory;
  Files files{directory.path()};
  RunState state;
  Form1 form1{host};
  FrmAuto frmAuto{host};
  FrmVRCAuto frmVRCAuto{host};
  WizardInCharge wizard{state, form1, frmAuto, frmVRCAuto};
  Activity activity{queue.clock()};
  Supervision supervision{queue, state, form1, wizard, activity};
  QtHttpClient http{queue, {.fetch = kSecond, .silence = 1500 * kMillisecond}};
  sim::WebServer server;
  ListFetch lists{host, http, files, wizard, activity, state, form1, server.url()};
  FirmwareSet set{files};
  Download download{host, http, files, set, lists, supervision, wizard, state, form1, server.url()};
  Registration registration{host, http, download, supervision, state, form1, server.url()};
};

TEST_F(Web, AListThatGoesWrongEndsInOneOfTheTexts) {
  struct Case {
    WebFault fault;
    const char* box;     // how it begins; empty for none
    const char* status;  // likewise
  };
  for (const Case& c :
       {Case{WebFault::Empty, "", "Firmlane was unable to make a connection."},
        Case{WebFault::ErrorPage, "", "The Firmlane was unable to find a list"},
        Case{WebFault::NoLength, "", "The Firmlane has received a list"}, Case{WebFault::Slow, "", "The Firmlane has received"},
        Case{WebFault::Cut, "Error trying to connect: ", ""}, Case{WebFault::LongerLength, "Error trying to connect: ", ""},
        Case{WebFault::Long, "Error trying to connect: The list is longer than 32767 characters (#6)",
             "The Firmlane has received"},
        Case{WebFault::Redirect, "", "The Firmlane has received"},
        Case{WebFault::RedirectCircle, "Error trying to connect: ", ""},
        Case{WebFault::Never, "Error trying to connect: The server takes too long to answer (#", ""}}) {
    SCOPED_TRACE(static_cast<int>(c.fault));
    server.setFault(c.fault);
    screen.boxes.clear();
    fetch();
    EXPECT_THAT(form1.lblStatus.Caption.get(), StartsWith(c.status));
    EXPECT_THAT(testing::PrintToString(screen.boxes), StartsWith(*c.box == '\0' ? "{}" : std::string("{ \"") + c.box));
  }
}

TEST_F(Web, ADownloadThatGoesWrongLeavesTheOldFile) {
  struct Case {
    WebFault fault;
    bool done;
    std::size_t size;  // of the file afterwards; the old one has 3 bytes, the page 20,000
    const char* info;
  };
  fetch();
  for (const Case& c :
       {Case{WebFault::Cut, false, 3, ""}, Case{WebFault::LongerLength, false, 3, ""}, Case{WebFault::Never, false, 3, ""},
        Case{WebFault::RedirectCircle, false, 3, ""}, Case{WebFault::Redirect, true, 20000, "Downloaded 20000 bytes (100%)"},
        Case{WebFault::NoLength, true, 20000, ""}, Case{WebFault::NegativeLength, true, 20000, ""},
        Case{WebFault::Bytes0, true, 0, ""}, Case{WebFault::Bytes1024, true, 1024, "Downloaded 1024 bytes (100%)"},
        Case{WebFault::Slow, true, 20000, "Downloaded 20000 bytes (100%)"}}) {
    SCOPED_TRACE(static_cast<int>(c.fault));
    server.setFault(c.fault, "/LWX/system/system32/wls.bin");
    directory.write("wls.bin", std::string("old"));
    form1.lblProgressInfo.Caption = "";
    screen.boxes.clear();
    firmware(0);
    EXPECT_EQ(download.DownloadDone, c.done);
    EXPECT_EQ(image("wls.bin").size(), c.size);
    EXPECT_EQ(form1.lblProgressInfo.Caption.get(), c.info);
    EXPECT_EQ(screen.boxes.size(), c.done ? 0U : 1U);
    EXPECT_FALSE(directory.has("wls.bin.part"));
  }
}

}  // namespace
}  // namespace firmlane::test
