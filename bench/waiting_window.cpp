// What a waiting window costs: the wizard's page that waits for the power switch stands for 18 s of its 20, its ring moving.
// Wants a display, or QT_QPA_PLATFORM=offscreen.
#include <sys/resource.h>

#include <QApplication>
#include <cstdio>

#include "platform/qt/qt_event_source.h"
#include "platform/widgets/widget_screen.h"
#include "progress/activity.h"
#include "state/auto_form.h"

namespace {

using namespace firmlane;

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QtEventSource source;
  EventQueue queue(source, source);
  WidgetScreen screen(nullptr);
  FormHost host(queue, screen);
  Activity activity(source);
  FrmAuto wizard(host);
  screen.attach(host, &activity);
  const auto pass = [&queue](Micros span) {
    for (const Micros end = queue.now() + span; queue.now() < end;) {
      queue.waitEventsUntil(end);
    }
  };
  wizard.Show();
  wizard.lblReset.Caption = "Turn off your receiver and turn it back on to continue";
  wizard.lblReset.Show();
  wizard.Progress1.Show();
  const Activity::Run run(activity, "WS", "DSPFlash", [] { return true; });
  for (const Micros limit : {20 * kSecond, Micros{0}}) {
    const Activity::Span waiting(activity, limit > 0 ? Doing::WaitingForSwitch : Doing::FetchingList, limit);
    pass(kSecond);
    const Micros start = queue.now();
    const double before = processorSeconds();
    pass(18 * kSecond);
    const double span = static_cast<double>(queue.now() - start) / kSecond;
    std::printf("%s: %.4f s of processor time in %.0f s, %.2f %% of a core\n",
                limit > 0 ? "a ring that empties" : "a ring that turns", processorSeconds() - before, span,
                100 * (processorSeconds() - before) / span);
  }
  return 0;
}
