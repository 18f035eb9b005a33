// What goes on, as a window shows it: the strip of the unit's processors, and below it the wait or the work of the moment with
// its ring. Takes no room while there is nothing to show. It is drawn at most five times a second, in long waits less often, and
// not at all when nothing moves.
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "platform/widgets/activity_words.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/processor_strip.h"
#include "platform/widgets/ring_view.h"
#include "platform/widgets/switch_picture.h"
#include "progress/activity.h"

namespace firmlane {

/// What a window shows of it.
enum class ActivityScope {
  Pages,       ///< the strip, and all but the search for a port, which has a window of its own
  PortSearch,  ///< that search alone
  Reading      ///< the reading of a unit alone
};

class ActivityPanel : public QWidget {
 public:
  /// Without an activity in the context it stays empty. While a message box is up limits stand still.
  ActivityPanel(const LayoutContext& context, ActivityScope scope);

  /// As high as the words are at the width that it has: it takes no more than that, and wrapped words no less.
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void arrange();
  void changed();
  void look();
  [[nodiscard]] bool concerns(Doing doing) const;
  void tell(const ActivityWords& words);

  LayoutContext context_;
  ActivityScope scope_;
  ProcessorStrip* strip_;
  QWidget* row_;
  SwitchPicture* picture_;
  RingView* ring_;
  QLabel* title_;
  QLabel* detail_;
  QLabel* warning_;
  QTimer timer_;
  QElapsedTimer sinceLook_;
  Micros shownSince_ = 0;  // tells what is shown from what came after it
  int turn_ = 0;
  std::shared_ptr<void> listening_;
};

}  // namespace firmlane
