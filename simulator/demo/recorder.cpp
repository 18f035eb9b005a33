#include "demo/recorder.h"

#include <QApplication>
#include <QPixmap>
#include <cstdio>
#include <iostream>

#include "platform/widgets/display_text.h"

namespace firmlane::sim {

Recorder::Recorder(Activity& activity, WidgetScreen& screen, std::filesystem::path directory)
    : activity_(activity),
      screen_(screen),
      directory_(std::move(directory)),
      listening_(activity.listen([this] { activityChanged(); })) {}

void Recorder::activityChanged() {
  const Activity::Phase phase = activity_.now();
  std::string text = nameOf(phase.doing);
  if (phase.parts > 0) {
    text += ", " + std::to_string(phase.part) + " of " + std::to_string(phase.parts);
  }
  if (phase.limit > 0) {
    text += ", limit " + std::to_string(phase.limit / kSecond) + " s";
  }
  for (const ProcessorReport& processor : activity_.processors()) {
    if (processor.state == firmlane::ProcessorState::Running) {
      text += ", " + processor.name;
    }
  }
  if (phase.doing != Doing::Nothing && text != told_) {
    told_ = text;
    std::cout << "    " << text << std::endl;
  }
}

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
    streamBegan_ = activity_.clock().now();
  } else if (phase_ == Phase::Receiving) {
    tellStream(state, activity_.clock().now() - streamBegan_);
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
