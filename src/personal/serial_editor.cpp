#include "personal/serial_editor.h"

#include <charconv>

#include "state/tell_failure.h"
#include "state/text.h"

namespace firmlane {

SerialEditor::SerialEditor(SerialFile& file, RunState& state, Form1& form1, NewSerial& newserial)
    : file_(file), state_(state), form1_(form1), newserial_(newserial) {
  newserial.OnLoad = [this] { newserial_.Text1.Text = std::to_string(state_.SerialNumber); };
  newserial.btnUp.OnClick = [this] { step(1); };
  newserial.btnDown.OnClick = [this] { step(-1); };
  newserial.btnOK.OnClick = [this] { take(); };
  newserial.btnCancel.OnClick = [this] { newserial_.Unload(); };
}

std::optional<std::int32_t> SerialEditor::entered() const {
  const std::string text = trimmed(newserial_.Text1.Text.get());
  const char* end = text.data() + text.size();
  std::int32_t number{};
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end || !SerialFile::fits(number)) {
    newserial_.host().showMessage("Please enter a whole number from 0 to " + std::to_string(SerialFile::kHighestNumber));
    return std::nullopt;
  }
  return number;
}

void SerialEditor::step(int by) {
  if (const auto number = entered(); number && SerialFile::fits(*number + by)) {
    newserial_.Text1.Text = std::to_string(*number + by);
  }
}

void SerialEditor::take() {
  const auto number = entered();
  if (!number) {
    return;
  }
  state_.SerialNumber = *number;
  newserial_.Unload();
  form1_.txtNum.Text = std::to_string(*number);
  form1_.lblOutcome.clear();
  // The file's own number too: with it the user takes an earlier entry back.
  if (*number >= state_.FileSerial) {
    try {
      file_.WriteSerialFile();
    } catch (const Failure& failure) {
      tellFailure(form1_.host(), state_, "Error: ", failure);
    }
  }
}

}  // namespace firmlane
