#include "platform/widgets/activity_words.h"

#include <QLocale>

namespace firmlane {

namespace {

int secondsUp(Micros span) { return static_cast<int>((span + kSecond - 1) / kSecond); }

QString bytes(std::int64_t count) {
  return QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qlonglong>(count));
}

QString bytesOfTotal(const Activity::Phase& phase) {
  return phase.total > 0 ? QStringLiteral("%1 of %2 bytes").arg(bytes(phase.done), bytes(phase.total))
                         : QStringLiteral("%1 bytes").arg(bytes(phase.done));
}

/// In steps that do not flicker: of a second below 20, else of 5.
int calmSeconds(Micros span) {
  const int whole = secondsUp(span);
  return whole < 20 ? whole : (whole + 4) / 5 * 5;
}

void countDown(ActivityWords& words, const Activity& activity) {
  const Activity::Phase phase = activity.now();
  if (phase.limit > 0) {
    words.share = static_cast<double>(activity.left()) / static_cast<double>(phase.limit);
    words.middle = QStringLiteral("%1 s").arg(secondsUp(activity.left()));
  }
}

void showBytes(ActivityWords& words, const Activity::Phase& phase) {
  words.detail = bytesOfTotal(phase);
  if (phase.total > 0) {
    words.share = static_cast<double>(phase.done) / static_cast<double>(phase.total);
  }
}

void tellSending(ActivityWords& words, const Activity& activity) {
  const Activity::Phase phase = activity.now();
  words.title = QStringLiteral("Sending the new firmware");
  if (phase.total > 0) {
    showBytes(words, phase);
  }
  if (const auto left = activity.estimate()) {
    words.detail += QStringLiteral(", about %1 s left").arg(calmSeconds(*left));
  } else if (activity.stalled()) {
    const Micros silent = activity.clock().now() - phase.moved;
    words.share = -1;
    words.detail += QStringLiteral(", nothing taken for %1 s").arg(silent / kSecond);
  }
}

}  // namespace

ActivityWords wordsFor(const Activity& activity) {
  const Activity::Phase phase = activity.now();
  ActivityWords words;
  switch (phase.doing) {
    case Doing::Nothing:
      break;
    case Doing::ReadingUnit:
      words.title = QStringLiteral("Asking the unit for its versions");
      if (!activity.processors().empty()) {
        words.detail = QStringLiteral("It answers as soon as it has started again.");
        words.powerSwitch = true;
      }
      countDown(words, activity);
      break;
    case Doing::WaitingForSwitch:
      words.title = QStringLiteral("Waiting for the unit to start");
      words.detail = QStringLiteral("The update then goes on by itself.");
      words.powerSwitch = true;
      countDown(words, activity);
      break;
    case Doing::Erasing:
      words.title = QStringLiteral("Erasing");
      words.detail = QStringLiteral("%1 s so far, at most %2 s").arg(activity.elapsed() / kSecond).arg(secondsUp(phase.limit));
      countDown(words, activity);
      break;
    case Doing::Sending:
      tellSending(words, activity);
      break;
    case Doing::WaitingForVerdict:
      words.title = QStringLiteral("All sent, waiting for the unit's answer");
      countDown(words, activity);
      break;
    case Doing::FetchingList:
      words.title = QStringLiteral("Fetching the list of versions");
      break;
    case Doing::Downloading:
      words.title =
          phase.parts > 1 ? QStringLiteral("File %1 of %2").arg(phase.part).arg(phase.parts) : QStringLiteral("Downloading");
      if (phase.done > 0) {
        showBytes(words, phase);
      }
      break;
    case Doing::SearchingPorts:
      words.title = QStringLiteral("Asking on port %1 of %2").arg(phase.part).arg(phase.parts);
      break;
  }
  if (phase.doing == Doing::Erasing || phase.doing == Doing::Sending || phase.doing == Doing::WaitingForVerdict) {
    words.warning = QStringLiteral("Leave the unit switched on.");
  }
  return words;
}

}  // namespace firmlane
