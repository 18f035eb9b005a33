#include "page_checks.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <set>

#include "platform/widgets/control_widgets.h"
#include "platform/widgets/form_window.h"
#include "platform/widgets/outcome_band.h"
#include "platform/widgets/processor_strip.h"
#include "platform/widgets/ring_view.h"

namespace firmlane::test {

namespace {

constexpr int kShort = 12;  // letters of a caption that has no reason to be broken

bool isField(const QWidget& widget) {
  return qobject_cast<const QAbstractButton*>(&widget) != nullptr || qobject_cast<const QLineEdit*>(&widget) != nullptr ||
         qobject_cast<const QAbstractItemView*>(&widget) != nullptr;
}

class Checks {
 public:
  explicit Checks(QWidget& window) : window_(window) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      const bool label = qobject_cast<QLabel*>(widget) != nullptr && !static_cast<QLabel*>(widget)->text().isEmpty();
      const bool control = isField(*widget) || label || dynamic_cast<PictureWidget*>(widget) != nullptr ||
                           dynamic_cast<OutcomeBand*>(widget) != nullptr || qobject_cast<QProgressBar*>(widget) != nullptr ||
                           dynamic_cast<RingView*>(widget) != nullptr || dynamic_cast<ProcessorStrip*>(widget) != nullptr;
      if (control && widget->isVisible()) {
        controls_.push_back(widget);
      }
    }
  }

  std::string run() {
    const QSize room = window_.screen()->availableSize();
    const QSize frame = window_.frameGeometry().size();
    if (frame.width() > room.width() || frame.height() > room.height()) {
      fault(window_, "is larger than the screen");
    }
    for (QWidget* control : controls_) {
      checkSeen(*control);
      checkTold(*control);
    }
    checkTab();
    checkReading();
    return faults_;
  }

 private:
  void fault(const QWidget& widget, const std::string& what) {
    faults_ += widget.objectName().toStdString() + " (" + widget.metaObject()->className() + ") " + what + "\n";
  }

  /// The part that scrolls may be higher than its space, never wider; all else stands in the window.
  void checkSeen(const QWidget& control) {
    const QWidget* space = &window_;
    for (const QWidget* parent = &control; parent != &window_; parent = parent->parentWidget()) {
      if (const auto* scroller = qobject_cast<const QScrollArea*>(parent)) {
        space = scroller->widget();
        if (space->width() > scroller->viewport()->width()) {
          fault(control, "stands on a page wider than its window");
        }
      }
    }
    const QRect place(control.mapTo(space, QPoint()), control.size());
    if (place.isEmpty() || !space->rect().contains(place)) {
      fault(control, "is out of sight");
    }
    const QSize least = control.minimumSizeHint();
    const int height = control.hasHeightForWidth() ? control.heightForWidth(control.width()) : least.height();
    const auto* button = qobject_cast<const QAbstractButton*>(&control);
    if (button != nullptr && button->text().size() <= kShort && button->text().contains(QLatin1Char('\n'))) {
      fault(control, "has a short caption in two lines");
    }
    if (control.height() < height || (isField(control) && control.width() < least.width())) {
      fault(control, "is cut: " + std::to_string(control.height()) + " px high, needs " + std::to_string(height));
    }
  }

  void checkTold(QWidget& control) {
    QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&control);
    if (told == nullptr || told->role() == QAccessible::NoRole || told->role() == QAccessible::Client) {
      fault(control, "has no role");
    } else if (told->text(QAccessible::Name).trimmed().isEmpty()) {
      fault(control, "has no name");
    } else if (qobject_cast<QRadioButton*>(&control) != nullptr &&
               (told->role() != QAccessible::RadioButton || told->parent()->role() != QAccessible::Grouping)) {
      fault(control, "is not told as an option of a group");
    }
  }

  /// Tab from control to control, as a user does, until it comes round.
  void checkTab() {
    QWidget* focusBefore = window_.focusWidget();
    std::set<const QWidget*> reached;
    for (std::size_t i = 0; i <= 2 * controls_.size() + 2; ++i) {
      QWidget* focus = window_.focusWidget() != nullptr ? window_.focusWidget() : &window_;
      QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
      QApplication::sendEvent(focus, &tab);
      const QWidget* at = window_.focusWidget();
      if (reached.insert(at).second && at != nullptr && at->visibleRegion().isEmpty()) {
        fault(*at, "is not seen when Tab has reached it");
      }
    }
    for (const QWidget* control : controls_) {
      const bool link =
          dynamic_cast<const TextLabel*>(control) != nullptr && static_cast<const TextLabel*>(control)->isClickable();
      if ((isField(*control) || link) && control->isEnabled() && !reached.contains(control)) {
        fault(*control, "is not reached by Tab");
      }
    }
    if (focusBefore != nullptr) {
      focusBefore->setFocus();
    }
  }

  /// Who has the window read out hears the page before the buttons below it.
  void checkReading() {
    bool foot = false;
    for (const QWidget* control : controls_) {
      const QWidget* parent = control;
      while (parent != nullptr && parent != &window_ && qobject_cast<const QScrollArea*>(parent) == nullptr) {
        parent = parent->parentWidget();
      }
      const bool onPage = parent != nullptr && parent != &window_;
      foot = foot || (!onPage && qobject_cast<const QPushButton*>(control) != nullptr);
      if (foot && onPage) {
        fault(*control, "is read behind the buttons");
      }
    }
  }

  QWidget& window_;
  std::vector<QWidget*> controls_;
  std::string faults_;
};

}  // namespace

std::string faultsOf(QWidget& window) { return Checks(window).run(); }

}  // namespace firmlane::test
