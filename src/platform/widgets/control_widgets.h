// The few widgets that Qt does not have as the forms need them. They hold nothing of the program; they tell of what the user
// does.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <functional>
#include <string>

#include "platform/widgets/pictures.h"

namespace firmlane {

/// A text, plain and wrapped. One that can be clicked looks like a link and takes the keyboard too.
class TextLabel : public QLabel {
 public:
  explicit TextLabel(QWidget* parent = nullptr);
  void setClickable(bool clickable);

  std::function<void()> clicked;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool clickable_ = false;
};

/// A picture, drawn anew at each size.
class PictureWidget : public QWidget {
 public:
  explicit PictureWidget(QWidget* parent = nullptr);
  void setPicture(const std::string& name);
  void setFit(PictureFit fit) { fit_ = fit; }
  void setClickable(bool clickable);
  [[nodiscard]] QSize sizeHint() const override { return pictureSize(name_); }

  std::function<void()> clicked;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  std::string name_;
  PictureFit fit_ = PictureFit::Whole;
  bool clickable_ = false;
  QPixmap drawn_;
};

/// A push button with air around its caption, however long that is.
class RoomyButton : public QPushButton {
 public:
  explicit RoomyButton(QWidget* parent = nullptr) : QPushButton(parent) {}
  [[nodiscard]] QSize sizeHint() const override;
};

/// An option button of which the form, not Qt, says whether it is selected: a click changes nothing by itself. Arrow keys ask for
/// its neighbours.
class OptionWidget : public QRadioButton {
 public:
  explicit OptionWidget(QWidget* parent = nullptr);

  /// An arrow key was pressed: -1 for the option before, 1 for the one behind.
  std::function<void(int)> stepped;

 protected:
  void nextCheckState() override {}
  void keyPressEvent(QKeyEvent* event) override;
};

/// A check box whose caption takes as many lines as it needs. The form says whether it is checked, as with an option button.
class WrappedCheckBox : public QCheckBox {
 public:
  explicit WrappedCheckBox(QWidget* parent = nullptr);
  void setCaption(const QString& caption);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void nextCheckState() override {}
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] QString wrapped(int width) const;

  QString caption_;
};

/// A remark beside another widget: it comes and goes with it.
class Remark : public QLabel {
 public:
  explicit Remark(QWidget& beside);
  /// Shows the remark, cut in the middle where it is too long; a screen reader tells it with the widget.
  void setRemark(const QString& remark);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& beside_;
};

/// A list that tells of each line the user picks: by click, also on the line that is selected already, by keyboard, and by a
/// tool that selects lines without making them current.
class LineList : public QListWidget {
 public:
  explicit LineList(QWidget* parent = nullptr);
  /// Shows these lines; tells nothing.
  void setLines(const QStringList& lines, int current);

  std::function<void(int)> picked;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  bool quiet_ = false;
};

}  // namespace firmlane
