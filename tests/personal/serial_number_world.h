// What the tests of the serial number procedure share: a worker at the production line.
#pragma once

#include <string>
#include <utility>

#include "factory_world.h"

namespace firmlane::test {

class SerialNumberTest : public FactoryTest {
 protected:
  /// Opens the editor, types, and presses OK.
  std::function<void()> type(const char* number) {
    return [this, number] {
      form1_.btnSerial.Click();
      world_.newserial.Text1.Text = number;
      world_.newserial.btnOK.Click();
    };
  }
  void at(double seconds, std::function<void()> action) {
    world_.after(static_cast<Micros>(seconds * kSecond), std::move(action));
  }
  [[nodiscard]] const MessageBox& box() const { return world_.screen.boxes().back(); }
  [[nodiscard]] std::string top() const { return form1_.lblTop.Caption; }
  [[nodiscard]] std::string instruction() const { return form1_.lblResetSerial.Caption; }
};

}  // namespace firmlane::test
