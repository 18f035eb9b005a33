// The program's list of what there is over its real HTTP client against the simulated web server, faults included.
#include <gmock/gmock.h>

#include <QTimer>

#include "catalogue/list_fetch.h"
#include "platform/qt/qt_event_source.h"
#include "platform/qt/qt_http_client.h"
#include "web/web_server.h"
#include "world.h"

namespace firmlane::test {
namespace {

using sim::WebFault;
using testing::StartsWith;

/// Presses the first button of every box and remembers its text.
class AnsweringScreen : public ScriptedScreen {
 public:
  using ScriptedScreen::ScriptedScreen;
  void messageBoxShown(const MessageBox& box) override {
    boxes.push_back(box.text);
    QTimer::singleShot(0, [this, button = buttonsOf(box.buttons).front()] { press(button); });
  }
  std::vector<std::string> boxes;
};

struct Web : testing::Test {
  Web() {
    screen.press = [this](MessageButton button) { host.answer(button); };
    form1.Load();
    state.ProductCode = "WS";
  }
  void fetch() {
    form1.List1.Clear();
    form1.lblStatus.Caption = "";
    lists.clearUrls();
    lists.GetUpdateText();
  }

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
  QtHttpClient http{queue, {.fetch = kSecond, .silence = 1500 * kMillisecond}};
  sim::WebServer server;
  ListFetch lists{host, http, files, wizard, activity, state, form1, server.url()};
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

}  // namespace
}  // namespace firmlane::test
