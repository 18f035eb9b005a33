// The forms in real windows. The screen owns no value: it shows what the forms hold and tells the form host what the user does.
// Its slots run no handler.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/screen.h"
#include "platform/widgets/box_window.h"
#include "platform/widgets/form_window.h"

namespace firmlane {

class Activity;
enum class WindowRole;

class WidgetScreen : public Screen {
 public:
  /// `portHint` gives the text beside a port number, empty for a number without hardware. Needs a QApplication.
  explicit WidgetScreen(std::function<std::string(int)> portHint);
  ~WidgetScreen() override;
  WidgetScreen(const WidgetScreen&) = delete;
  WidgetScreen& operator=(const WidgetScreen&) = delete;

  /// The host whose message boxes this screen shows, and what goes on, which outlives the screen's windows. Before the program
  /// starts.
  void attach(FormHost& host, Activity* activity = nullptr) {
    host_ = &host;
    activity_ = activity;
  }

  /// What "Copy details" copies: a box and a band that tell a failure, and the about box, have such a button from now on. Before
  /// the program starts.
  void setDetails(std::function<std::string()> details) { details_ = std::move(details); }

  /// Brings all windows up to date at once; else changes are gathered for a sixtieth of a second.
  void refresh();

  /// The window of a form that is on screen, or null. For screenshots and tests.
  [[nodiscard]] FormWindow* window(const Form& form) const;
  [[nodiscard]] BoxWindow* box() const { return box_.get(); }

  void formShown(Form& form, bool modal) override;
  void formHidden(Form& form) override;
  void formUnloaded(Form& form) override;
  void formCentred(Form& form) override;
  void formChanged(Form& form) override;
  void controlChanged(Control& control) override;
  void messageBoxShown(const MessageBox& box) override;
  void messageBoxClosed() override;
  void setPointer(Pointer pointer) override;
  [[nodiscard]] ScreenSize size() const override;

 private:
  FormWindow& windowFor(Form& form);
  void place(FormWindow& window) const;
  void placeAgain(FormWindow& window, int tries);
  [[nodiscard]] QWidget* topWindow(const QWidget* except) const;
  void handOn() const;
  void gather();
  void showPointer() const;
  [[nodiscard]] std::function<void()> copyDetails() const;

  std::function<std::string(int)> portHint_;
  FormHost* host_ = nullptr;
  Activity* activity_ = nullptr;
  std::function<std::string()> details_;
  std::map<const Form*, std::unique_ptr<FormWindow>> windows_;
  std::map<const Form*, WindowRole> roles_;
  std::set<const Form*> centred_;
  // Of the main window that was hidden last: its place and whether it filled the screen.
  QRect lastPlace_;
  bool lastMaximised_ = false;
  std::unique_ptr<BoxWindow> box_;
  Pointer pointer_ = Pointer::Normal;
  QTimer gathering_;
  QElapsedTimer sinceRefresh_;
};

}  // namespace firmlane
