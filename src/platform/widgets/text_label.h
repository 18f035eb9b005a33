// A text in a window.
#pragma once

#include <QLabel>
#include <functional>
#include <memory>

class QMouseEvent;

namespace firmlane {

class PageText;

/// Whether the left button was let go on the widget that it was pressed on.
bool isClickOn(const QWidget& widget, const QMouseEvent& event);

/// A text, plain and wrapped. One that can be clicked looks like a link and takes the keyboard too; a page's text is set for
/// reading.
class TextLabel : public QLabel {
 public:
  explicit TextLabel(QWidget* parent = nullptr);
  ~TextLabel() override;
  TextLabel(const TextLabel&) = delete;
  TextLabel& operator=(const TextLabel&) = delete;

  void setClickable(bool clickable);
  [[nodiscard]] bool isClickable() const { return clickable_; }
  /// Sets the text as a page's text from now on.
  void becomePageText();

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] int heightForWidth(int width) const override;

  std::function<void()> clicked;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const PageText& setIn(int width) const;

  bool clickable_ = false;
  bool pageText_ = false;
  mutable std::unique_ptr<PageText> set_;
  mutable QString setText_;
};

}  // namespace firmlane
