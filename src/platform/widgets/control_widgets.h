// The few widgets that Qt does not have as the forms need them. They hold nothing of the program; they tell of what the user
// does.
#pragma once

#include <QCheckBox>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <functional>
#include <string>

#include "platform/widgets/pictures.h"
#include "platform/widgets/text_label.h"

namespace firmlane {

/// A picture, drawn anew at each size.
class PictureWidget : public QWidget {
 public:
  explicit PictureWidget(QWidget* parent = nullptr);
  void setPicture(const std::string& name);
  void setFit(PictureFit fit) { fit_ = fit; }
  void setClickable(bool clickable);
  [[nodiscard]] bool isClickable() const { return clickable_; }
  /// The picture fills a space as high as its window lets it be, and keeps its composition: its width goes with its height.
  void followHeight(int usualWidth, int usualHeight);
  [[nodiscard]] QSize sizeHint() const override { return pictureSize(name_); }

  std::function<void()> clicked;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  std::string name_;
  PictureFit fit_ = PictureFit::Whole;
  bool clickable_ = false;
  QSize usual_;  // empty for a picture that does not follow its height
  QPixmap drawn_;
};

/// A push button with air around its caption, however long that is, and a key that the caption does not show.
class RoomyButton : public QPushButton {
 public:
  explicit RoomyButton(QWidget* parent = nullptr);
  void setCaption(const QString& caption);
  /// Alt and this letter press the button.
  void setKey(Qt::Key letter);
  /// A picture in front of the caption; both stand at the left then, so that buttons below each other are in line.
  void setPicture(const std::string& name, QSize size);
  [[nodiscard]] QSize sizeHint() const override;
  /// Where room is short, most of the air goes.
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint() - QSize(3 * fontMetrics().averageCharWidth(), 0); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QKeySequence key_;
  std::string picture_;
  QSize pictureSize_;
};

/// Choices that belong together, told to a screen reader as a group of that name. It is there as long as one of them is.
class ChoiceGroup : public QWidget {
 public:
  explicit ChoiceGroup(const QString& name, QWidget* parent = nullptr);

 protected:
  void childEvent(QChildEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void refresh();
};

/// Breaks a caption into lines of that width.
QString brokenInto(const QString& caption, const QFont& font, int width);

/// A button of the form's, not of Qt: the form says whether it is checked, so a click changes nothing by itself. Its caption
/// takes as many lines as it needs.
template <typename Button>
class Wrapped : public Button {
 public:
  explicit Wrapped(QWidget* parent = nullptr);
  void setCaption(const QString& caption);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void nextCheckState() override {}
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int besideCaption() const;
  [[nodiscard]] QString wrapped(int width) const { return brokenInto(caption_, this->font(), width - besideCaption()); }

  QString caption_;
};

using WrappedCheckBox = Wrapped<QCheckBox>;

/// An option button. Arrow keys ask for its neighbours.
class OptionWidget : public Wrapped<QRadioButton> {
 public:
  explicit OptionWidget(QWidget* parent = nullptr);

  /// An arrow key was pressed: -1 for the option before, 1 for the one behind.
  std::function<void(int)> stepped;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

/// A remark beside an option: it comes and goes with it.
class Remark : public QLabel {
 public:
  explicit Remark(QAbstractButton& beside);
  /// Shows the remark, cut in the middle where it is too long; a screen reader tells it with the option. What is `present` stands
  /// out from what is not.
  void setRemark(const QString& remark, bool present);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAbstractButton& beside_;
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
