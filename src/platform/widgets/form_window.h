// The window of one form. It shows the form's controls by widgets where the form's layout has put them, and tells the form host
// what the user does with the window itself.
#pragma once

#include <QDialog>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/widgets/control_binding.h"

class QLabel;
class QPushButton;
class QScrollArea;

namespace firmlane {

class OutcomeBand;

class FormWindow : public QDialog {
 public:
  explicit FormWindow(Form& form);
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow() override;

  [[nodiscard]] Form& form() const { return form_; }

  /// The widget of the control of that name; made when it is first asked for, in the order in which Tab goes round. Controls that
  /// nobody asks for have none. Throws std::out_of_range when the form has no such control.
  QWidget* operator[](std::string_view name);
  /// As above, for a control that has no text of its own to be told by: `description` is what a screen reader says.
  QWidget* described(std::string_view name, const char* description);
  /// The label becomes the name of the field that it stands at.
  void nameBy(std::string_view label, std::string_view field);
  /// Whether the form has a control of that name.
  [[nodiscard]] bool has(std::string_view name) const { return form_.control(name) != nullptr; }

  /// Alt and that letter press the button.
  void setKey(std::string_view button, Qt::Key letter);
  /// A screen reader announces this label or band when it says something new: what goes on.
  void announce(std::string_view label);
  /// The band need not repeat what the page's text says already.
  void tellOnce(std::string_view band, std::string_view text);
  /// Called with each widget that is announced.
  std::function<void(const QWidget&)> announced;
  /// What the window's texts say, in their order.
  [[nodiscard]] QString pageText() const;
  /// The part that scrolls when the screen has no room for all of it.
  void setPage(QScrollArea& page) { page_ = &page; }

  /// The button that Return presses; of several the last that is shown. The first has the focus when the window comes up.
  void setDefaultButton(std::string_view name);
  /// Makes it a dialog: it stays above the window it belongs to, and Esc closes it. Before it is shown.
  void makeDialog();
  [[nodiscard]] bool isDialog() const { return windowType() == Qt::Dialog; }

  /// The size in which the window comes up, if it needs no more.
  void setUsualSize(QSize size) { usualSize_ = size; }
  [[nodiscard]] QSize sizeHint() const override { return QDialog::sizeHint().expandedTo(usualSize_); }

  /// Marks a control as changed; false when this window does not show it.
  bool markStale(const Control& control);
  /// Brings what has changed up to date, and the window's own title.
  void refresh();
  void refreshAll();
  /// Gives the window the size that its content needs, as far as the screen has room. A dialog grows around its middle.
  void makeRoom();

  void reject() override;

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  struct Announced {
    QWidget* widget;
    QString told;
  };

  ControlBinding& binding(Control& control);
  [[nodiscard]] QSize neededSize(int width) const;
  void tellChanges();
  void shortenBand();
  void chooseDefault();
  void chooseFocus();
  /// The first thing on the page that can be filled in or chosen, of option buttons the selected one; null for none.
  QWidget* firstField();

  Form& form_;
  std::unordered_map<const Control*, std::unique_ptr<ControlBinding>> bindings_;
  std::vector<ControlBinding*> stale_;
  std::vector<QPushButton*> defaults_;
  std::vector<Announced> announced_;
  OutcomeBand* band_ = nullptr;
  QLabel* bandText_ = nullptr;
  QScrollArea* page_ = nullptr;
  QWidget* lastMade_ = nullptr;
  QWidget* firstField_ = nullptr;
  QSize usualSize_;
  std::optional<QPoint> middle_;  // where it was before the change that the layout has yet to follow
};

}  // namespace firmlane
