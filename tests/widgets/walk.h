// A whole update with the program's real windows: a simulated unit, a web server with the releases and a user who plays along,
// all in virtual time. Each page can be looked at before the user acts on it.
#pragma once

#include <QWidget>
#include <functional>

#include "../scenarios/releases.h"
#include "app/program.h"
#include "platform/widgets/widget_screen.h"
#include "player/player.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

class Walk : public Ground {
 public:
  Walk(Line line, const std::string& model, Wishes wishes);

  /// Called with each page or box as it stands, with the name of its form.
  std::function<void(const std::string& form, QWidget& window)> onPage;

  /// Plays until the update has succeeded or failed.
  Player::Outcome play();

  WidgetScreen windows{[](int number) { return number == 3 ? "ttyUSB0, FT232R USB UART" : ""; }};
  sim::VirtualUnit bench;
  Program program;

 private:
  void look();
  void show();

  Player player_;
  Player::Outcome outcome_ = Player::Outcome::Playing;
};

/// Brings windows up to date as Qt's own event loop would, without time passing.
void settleWindows(WidgetScreen& screen);

}  // namespace firmlane::test
