// Ties one control to the widget that shows it. The control holds the values: the widget is brought up to date from it, and what
// the user does with the widget is told to the form host, which decides.
#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <memory>

#include "platform/screen.h"

namespace firmlane {

class ControlBinding {
 public:
  ControlBinding(Control& control, QWidget* widget) : control_(control), widget_(widget) {}
  virtual ~ControlBinding() = default;
  ControlBinding(const ControlBinding&) = delete;
  ControlBinding& operator=(const ControlBinding&) = delete;

  /// The widget; it belongs to the window that it stands in.
  [[nodiscard]] QWidget* widget() const { return widget_; }
  [[nodiscard]] Control& control() const { return control_; }

  /// Brings the widget up to date.
  void refresh();

  /// Called when the widget may show something else than the control holds.
  std::function<void()> touched;

  /// Changed since the last refresh; kept by the window.
  bool stale = false;

 protected:
  virtual void showValues() = 0;
  /// Hands a user's click to the host.
  void click();
  void touch();
  [[nodiscard]] FormHost& host() const { return control_.form().host(); }
  /// What the widget's slots belong to; they end with the binding.
  QObject context_;

  /// Whether it is the form that changes the widget just now; else it is the user, by whatever means.
  [[nodiscard]] bool showing() const { return showing_; }

 private:
  void keepFocus() const;

  Control& control_;
  QWidget* widget_;
  bool showing_ = false;
};

/// The binding for a control of any kind, with a new widget in `parent`.
std::unique_ptr<ControlBinding> bindControl(Control& control, QWidget* parent);

}  // namespace firmlane
