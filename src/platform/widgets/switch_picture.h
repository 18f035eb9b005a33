// A unit with its power switch, and an arrow from off to on: what the user is asked to do, as a picture.
#pragma once

#include <QWidget>

namespace firmlane {

class SwitchPicture : public QWidget {
 public:
  explicit SwitchPicture(QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace firmlane
