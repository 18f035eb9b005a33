// A message box in its window: our own sign, sharp at every scale, the text to take along with Ctrl+C, and room for a button that
// does not answer the box.
#pragma once

#include <QMessageBox>
#include <functional>

#include "platform/screen.h"
#include "platform/widgets/looks.h"

namespace firmlane {

/// The sign that fits a box: what it says it is, else what its buttons ask.
Sign signOf(const MessageBox& box);

class BoxWindow : public QMessageBox {
 public:
  BoxWindow(const MessageBox& box, QWidget* parent);

  /// Called once, with the user's answer; closing the box counts as the last button: OK alone, Cancel, No.
  std::function<void(MessageButton)> answered;

  /// A further button that leaves the box standing, such as one that copies details.
  void setAction(const QString& text, std::function<void()> pressed);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace firmlane
