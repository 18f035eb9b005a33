// An 8 MB download over loopback by the program's own download and by "curl -o", side by side, from one server process.
// Wanted: at most 1.5 times curl's time. Wants a display, or QT_QPA_PLATFORM=offscreen.
#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "catalogue/download.h"
#include "platform/qt/qt_event_source.h"
#include "platform/qt/qt_http_client.h"
#include "platform/widgets/widget_screen.h"

namespace {

using namespace firmlane;

constexpr const char* kPath = "/LWX/system/system32/wls.bin";
constexpr int kRounds = 15;

/// The real window, so that showing the progress is part of the time.
class Window : public WidgetScreen {
 public:
  Window() : WidgetScreen([](int) { return std::string(); }) {}
  void messageBoxShown(const MessageBox& box) override {
    std::puts(box.text.c_str());
    std::exit(EXIT_FAILURE);
  }
};

/// The program's download and what it stands on.
struct Downloader {
  Downloader(const std::string& directory, const std::string& server)
      : files(directory),
        lists(host, http, files, wizard, activity, state, form1, server),
        download(host, http, files, set, lists, supervision, wizard, state, form1, server) {
    screen.attach(host);
    form1.Show();
    form1.ProgressBar1.Show();
    form1.List1.AddItem("DSP");
    form1.List1.ListIndex = 0;
    state.ProductCode = "WS";
    state.LwxSystems[0].SystemDir = "system32";
  }

  QtEventSource source;
  EventQueue queue{source, source};
  Window screen;
  FormHost host{queue, screen};
  RunState state;
  Form1 form1{host};
  FrmAuto frmAuto{host};
  FrmVRCAuto frmVRCAuto{host};
  WizardInCharge wizard{state, form1, frmAuto, frmVRCAuto};
  Activity activity{queue.clock()};
  Supervision supervision{queue, state, form1, wizard, activity};
  QtHttpClient http{queue};
  Files files;
  FirmwareSet set{files};
  ListFetch lists;
  Download download;
};

template <typename Action>
double milliseconds(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The simulator's web server in a process of its own; its URL, empty when it does not start.
QString startServer(QProcess& server) {
  server.start(PROGRAMS "/firmlane-simulator", {"--serve"});
  constexpr int kLimit = 5000;
  if (!server.waitForReadyRead(kLimit)) {
    return {};
  }
  const QString line = server.readLine();
  server.write(QByteArray("web fault megabytes-8 ") + kPath + "\n");
  server.waitForReadyRead(kLimit);
  const auto start = line.indexOf("http://");
  return start < 0 ? QString() : line.mid(start, line.indexOf('"', start) - start);
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QProcess server;
  const QString url = startServer(server);
  if (url.isEmpty()) {
    std::puts("firmlane-simulator --serve does not start");
    return EXIT_FAILURE;
  }
  server.setStandardOutputFile(QProcess::nullDevice());
  const QTemporaryDir directory;
  Downloader downloader(directory.path().toStdString(), url.toStdString());
  std::vector<double> own;
  std::vector<double> curl;
  for (int i = 0; i < kRounds; ++i) {
    own.push_back(milliseconds([&] { downloader.download.GetFirmware2(); }));
    curl.push_back(milliseconds([&] { QProcess::execute("curl", {"-s", "-o", directory.path() + "/curl.bin", url + kPath}); }));
  }
  std::printf("8 MB over loopback: %.1f ms, curl %.1f ms, ratio %.2f (medians of %d)\n", median(own), median(curl),
              median(own) / median(curl), kRounds);
  server.closeWriteChannel();
  server.kill();
  server.waitForFinished();
}
