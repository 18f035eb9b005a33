// How something ended, told at a glance: a band with sign and colour behind the words. It says what it is told and decides
// nothing.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <functional>

#include "platform/widgets/control_widgets.h"
#include "platform/widgets/looks.h"

namespace firmlane {

class OutcomeBand : public QWidget {
 public:
  explicit OutcomeBand(QWidget* parent = nullptr);

  /// Shows the words under that sign.
  void tell(Sign sign, const QString& words);
  [[nodiscard]] Sign sign() const { return sign_; }
  [[nodiscard]] QString words() const { return told_; }
  /// Where the page itself has these words, the band need not repeat them: the sign in a word is enough then.
  void beBrief(bool brief);

  /// A button at the end of the band while it tells a failure, such as one that copies details. An empty text takes it away.
  void setAction(const QString& text, std::function<void()> pressed);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Sign sign_ = Sign::None;
  QString told_;
  PictureWidget* picture_;
  TextLabel* words_;
  QPushButton* action_;
  std::function<void()> pressed_;
};

}  // namespace firmlane
