// What goes on, as the windows tell and draw it.
#include "progress/activity.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QPaintEvent>
#include <QVBoxLayout>

#include "platform/virtual/virtual_time.h"
#include "platform/widgets/activity_panel.h"
#include "platform/widgets/activity_words.h"
#include "real_ground.h"

namespace firmlane::test {
namespace {

/// "title | detail | warning | share | middle"
std::string told(const Activity& activity) {
  const ActivityWords words = wordsFor(activity);
  return QStringLiteral("%1 | %2 | %3 | %4 | %5")
      .arg(words.title, words.detail, words.warning)
      .arg(words.share, 0, 'f', 2)
      .arg(words.middle)
      .toStdString();
}

TEST(ActivityWordsTest, EachWaitIsToldWithWhatIsKnownOfItAndNoMore) {
  VirtualTime time;
  EventQueue queue(time, time);
  Activity activity(time);
  const auto wait = [&](Micros span) {
    const Micros end = queue.now() + span;
    while (queue.now() < end) {
      queue.waitEventsUntil(end);
    }
  };
  EXPECT_EQ(told(activity), " |  |  | -1.00 | ");
  {
    const Activity::Span span(activity, Doing::ReadingUnit);
    EXPECT_EQ(told(activity), "Asking the unit for its versions |  |  | -1.00 | ");
  }
  {
    const Activity::Span span(activity, Doing::WaitingForSwitch, 20 * kSecond);
    wait(4500 * kMillisecond);
    EXPECT_TRUE(wordsFor(activity).powerSwitch);
    EXPECT_THAT(told(activity), testing::EndsWith("| 0.78 | 16 s"));
  }
  {
    const Activity::Span span(activity, Doing::Erasing, 80 * kSecond);
    wait(20 * kSecond);
    EXPECT_EQ(told(activity), "Erasing | 20 s so far, at most 80 s | Leave the unit switched on. | 0.75 | 60 s");
  }
  {
    const Activity::Span file(activity, Doing::Downloading, 0, 2, 4);
    EXPECT_EQ(told(activity), "File 2 of 4 |  |  | -1.00 | ");
    activity.progress(5'000, 0);
    EXPECT_EQ(told(activity), "File 2 of 4 | 5,000 bytes |  | -1.00 | ") << "a length that the server did not tell";
    activity.progress(6'000, 12'000);
    EXPECT_EQ(told(activity), "File 2 of 4 | 6,000 of 12,000 bytes |  | 0.50 | ");
  }
}

TEST(ActivityWordsTest, AnEstimateComesWhenItCanBeTrueAndGoesWhenTheUnitTakesNothing) {
  VirtualTime time;
  EventQueue queue(time, time);
  Activity activity(time);
  const Activity::Span span(activity, Doing::Sending);
  std::int64_t sent = 0;
  const auto send = [&](int seconds) {
    for (int i = 0; i < 2 * seconds; ++i) {
      queue.waitEventsUntil(queue.now() + 500 * kMillisecond);
      activity.progress(sent += 480, 48'000);
    }
    return wordsFor(activity).detail.toStdString();
  };
  EXPECT_EQ(send(3), "2,880 of 48,000 bytes") << "the line was not watched long enough";
  EXPECT_EQ(send(2), "4,800 of 48,000 bytes, about 45 s left");
  queue.waitEventsUntil(queue.now() + 20 * kSecond);
  EXPECT_EQ(wordsFor(activity).detail, "4,800 of 48,000 bytes, nothing taken for 20 s");
  EXPECT_LT(wordsFor(activity).share, 0) << "a ring that turns";
  EXPECT_EQ(send(3), "7,680 of 48,000 bytes") << "what was before the stall says nothing of the line";
  EXPECT_EQ(send(37), "43,200 of 48,000 bytes, about 5 s left");
  EXPECT_EQ(send(5), "48,000 of 48,000 bytes");
}

/// Counts how often a widget is drawn.
struct Paints : QObject {
  explicit Paints(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    count += event->type() == QEvent::Paint ? 1 : 0;
    return false;
  }
  int count = 0;
};

struct ActivityPanelTest : RealGround, testing::Test {
  Activity activity{source};
  bool boxIsUp = false;
  QWidget window;
  ActivityPanel panel{{.portHint = {}, .activity = &activity, .held = [this] { return boxIsUp; }}, ActivityScope::Pages};
  QWidget& ring = *panel.findChild<QWidget*>(QStringLiteral("ring"));
  Paints paints{ring};

  ActivityPanelTest() {
    panel.setParent(&window);
    window.resize(600, 400);
    panel.resize(600, 300);
    window.show();
    run(300 * kMillisecond);
  }
  /// How often the ring is drawn in a span without a gap.
  int drawn(Micros span = 600 * kMillisecond) {
    run(250 * kMillisecond);
    paints.count = 0;
    run(span);
    return paints.count;
  }
};

TEST_F(ActivityPanelTest, TheRingMovesFromTheFirstSecondAndNothingIsDrawnWhenNothingMoves) {
  EXPECT_FALSE(panel.isVisible());
  {
    const Activity::Span waiting(activity, Doing::WaitingForSwitch, 20 * kSecond);
    EXPECT_THAT(drawn(1200 * kMillisecond), testing::AllOf(testing::Ge(1), testing::Le(2)));
  }
  {
    const Activity::Span erasing(activity, Doing::Erasing, 9 * kSecond);
    EXPECT_THAT(drawn(), testing::AllOf(testing::Ge(2), testing::Le(4)));
    EXPECT_TRUE(ring.isVisible());
    boxIsUp = true;
    EXPECT_EQ(drawn(), 0) << "under a message box no limit runs";
    boxIsUp = false;
    window.hide();
    EXPECT_EQ(drawn(), 0);
    window.show();
    EXPECT_GE(drawn(), 2);
    boxIsUp = true;
  }
  EXPECT_EQ(drawn(), 0);
  EXPECT_FALSE(panel.isVisible()) << "what has ended is over, under a box too";
  boxIsUp = false;
  activity.setProcessors("WS", {{.target = "DSPFlash", .name = "DSP", .number = 2}});
  EXPECT_EQ(drawn(), 0);
  EXPECT_TRUE(panel.isVisible()) << "the strip stays between two runs";
  EXPECT_FALSE(ring.isVisible());
}

TEST_F(ActivityPanelTest, WordsThatWrapHaveTheRoomTheyNeed) {
  auto* page = new QVBoxLayout(&window);
  page->addWidget(&panel);
  page->addStretch();
  const Activity::Span waiting(activity, Doing::WaitingForSwitch, 20 * kSecond);
  for (const int width : {600, 400, 330}) {
    window.resize(width, 400);
    run(300 * kMillisecond);
    for (const QLabel* label : panel.findChildren<QLabel*>()) {
      EXPECT_TRUE(!label->isVisible() || label->height() >= label->heightForWidth(label->width()))
          << label->text().toStdString() << ": " << label->height() << " px high in a window of " << width;
    }
  }
}

TEST_F(ActivityPanelTest, TheSearchForAPortIsTheBusinessOfItsOwnWindow) {
  const Activity::Span searching(activity, Doing::SearchingPorts, 0, 3, 16);
  EXPECT_EQ(drawn(), 0);
  EXPECT_FALSE(panel.isVisible());
}

}  // namespace
}  // namespace firmlane::test
