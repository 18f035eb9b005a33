#include "demo/recorder.h"

#include <QApplication>
#include <QPixmap>
#include <cstdio>
#include <iostream>

#include "platform/widgets/display_text.h"

namespace firmlane::sim {

Recorder::Recorder(const Clock& clock, WidgetScreen& screen, std::filesystem::path directory)
    : clock_(clock), screen_(screen), directory_(std::move(directory)) {}

void Recorder::page(const FormHost& host, const std::string& text) {
  std::cout << "--- " << ++pages_ << "\n" << displayText(text).toStdString() << std::endl;
  screen_.refresh();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);  // a text that has grown has its place before the picture
  const QWidget* shown = screen_.box();
  std::string name = "message";
  if (shown == nullptr && !host.onScreen().empty()) {
    shown = screen_.window(*host.onScreen().front());
    name = host.onScreen().front()->name();
  }
  if (shown != nullptr) {
    char number[8];
    std::snprintf(number, sizeof number, "%02d", pages_);
    const auto file = directory_ / (std::string(number) + "-" + name + ".png");
    const_cast<QWidget*>(shown)->grab().save(QString::fromStdString(file.string()));
  }
}

void Recorder::unitChanged(const UnitState& state) {
  if (state.phase == phase_) {
    return;
  }
  if (state.phase == Phase::Receiving) {
    streamBegan_ = clock_.now();
  } else if (phase_ == Phase::Receiving) {
    tellStream(state, clock_.now() - streamBegan_);
  }
  phase_ = state.phase;
}

void Recorder::tellStream(const UnitState& state, Micros span) const {
  const double seconds = static_cast<double>(span) / kSecond;
  const auto bytes = static_cast<double>(state.received);
  std::printf("    stream: %.0f bytes in %.2f s, %.0f bytes per second\n", bytes, seconds, seconds > 0 ? bytes / seconds : 0);
  std::fflush(stdout);
}

}  // namespace firmlane::sim
