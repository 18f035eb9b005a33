#include "platform/widgets/accessible_widgets.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "platform/widgets/control_widgets.h"
#include "platform/widgets/outcome_band.h"
#include "platform/widgets/processor_strip.h"
#include "platform/widgets/ring_view.h"
#include "platform/widgets/switch_picture.h"

namespace firmlane {

namespace {

/// A text, a link or a picture: what can be clicked can be pressed.
template <typename W>
class Pressable : public QAccessibleWidget {
 public:
  Pressable(W& widget, QAccessible::Role plain, QAccessible::Role clickable)
      : QAccessibleWidget(&widget, plain), widget_(widget), clickable_(clickable) {}

  [[nodiscard]] QAccessible::Role role() const override { return widget_.isClickable() ? clickable_ : QAccessibleWidget::role(); }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (widget_.isClickable() && widget_.isEnabled()) {
      names.prepend(pressAction());
    }
    return names;
  }
  void doAction(const QString& action) override {
    if (action == pressAction() && widget_.isClickable() && widget_.isEnabled() && widget_.clicked) {
      widget_.clicked();
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 protected:
  W& widget_;

 private:
  QAccessible::Role clickable_;
};

class AccessibleText : public Pressable<TextLabel> {
 public:
  explicit AccessibleText(TextLabel& label) : Pressable(label, QAccessible::StaticText, QAccessible::Link) {}

  [[nodiscard]] QString text(QAccessible::Text what) const override {
    return what == QAccessible::Name ? widget_.text() : QAccessibleWidget::text(what);
  }
};

/// Qt takes an option for a check box when the form, not Qt, keeps it the only one.
class AccessibleOption : public QAccessibleWidget {
 public:
  explicit AccessibleOption(OptionWidget& option) : QAccessibleWidget(&option, QAccessible::RadioButton), option_(option) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = option_.isChecked();
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (option_.isEnabled()) {
      names.prepend(toggleAction());
    }
    return names;
  }
  void doAction(const QString& action) override {
    if (action == toggleAction() || action == pressAction()) {
      option_.click();
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 private:
  OptionWidget& option_;
};

// NOLINTBEGIN(cppcoreguidelines-owning-memory): Qt owns what a factory makes
QAccessibleInterface* make(const QString& /*className*/, QObject* object) {
  if (auto* label = dynamic_cast<TextLabel*>(object)) {
    return new AccessibleText(*label);
  }
  if (auto* option = dynamic_cast<OptionWidget*>(object)) {
    return new AccessibleOption(*option);
  }
  if (auto* picture = dynamic_cast<PictureWidget*>(object)) {
    return new Pressable<PictureWidget>(*picture, QAccessible::Graphic, QAccessible::Graphic);
  }
  if (auto* band = dynamic_cast<OutcomeBand*>(object)) {
    return new QAccessibleWidget(band, QAccessible::AlertMessage);
  }
  if (auto* picture = dynamic_cast<SwitchPicture*>(object)) {
    return new QAccessibleWidget(picture, QAccessible::Graphic);
  }
  if (auto* strip = dynamic_cast<ProcessorStrip*>(object)) {
    return new QAccessibleWidget(strip, QAccessible::Indicator);
  }
  if (auto* ring = dynamic_cast<RingView*>(object)) {
    return new QAccessibleWidget(ring, QAccessible::Indicator);
  }
  if (object != nullptr && object->isWidgetType() && object->property(kGroupProperty).toBool()) {
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
  }
  return nullptr;
}
// NOLINTEND(cppcoreguidelines-owning-memory)

}  // namespace

void useAccessibleWidgets() {
  QAccessible::removeFactory(make);
  QAccessible::installFactory(make);
}

}  // namespace firmlane
