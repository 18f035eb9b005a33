#include "flash_world.h"

namespace firmlane::test {

namespace {
constexpr std::size_t kWantSize = 9;
constexpr std::size_t kLengthBytes = 2;
constexpr std::size_t kBatch = 32;
}  // namespace

void BootLoader::play(const Script& script) {
  script_ = script;
  wanted.clear();
  want_.clear();
  image.clear();
  wire_.heard = [this](std::uint8_t byte) { take(byte); };
  sayAfter(script_.powerOn, script_.announces);
}

void BootLoader::say(int subCode) {
  const Bytes data = {static_cast<std::uint8_t>(subCode)};
  wire_.send(buildFrame(FrameKind::BootFrame, 0, 31, data), script_.baud);
}

void BootLoader::sayAfter(std::optional<Micros> span, int subCode) {
  if (span) {
    time_.after(*span, [this, subCode] { say(subCode); });
  }
}

void BootLoader::take(std::uint8_t byte) {
  if (want_.size() < kWantSize) {
    want_.push_back(byte);
    if (want_.size() == kWantSize) {
      wanted = hex(want_);
      sayAfter(script_.erased, script_.announces + 1);
    }
    return;
  }
  image.push_back(byte);
  handshake = wire_.settings()->handshake;
  takeImage();
}

void BootLoader::takeImage() {
  const std::size_t batches = (image.size() - std::min(image.size(), kLengthBytes)) / kBatch;
  if (!script_.batchAnswers.empty()) {
    if (batches > 0 && batches <= script_.batchAnswers.size() && image.size() == kLengthBytes + batches * kBatch) {
      sayAfter(5 * kMillisecond, script_.batchAnswers[batches - 1]);
    }
  } else if (image.size() == script_.image) {
    sayAfter(script_.verdict, script_.announces + (script_.refuses ? 3 : 2));
  }
}

FlashTest::FlashTest() {
  state_.ComPort = 3;
  state_.InAutoWizard = true;
  frmAuto_.prgTotal.Max = 9;
  world_.screen.answerOthers();
  world_.time.setEnd(kSecond * 7200);
  world_.screen.onChange = [this](Control& control) {
    if (&control == &form1_.lblTop) {
      pages_.push_back(
          {world_.time.now(), form1_.lblTop.Caption, form1_.ProgressBar1.Value, supervision_.BarValue, form1_.Timer1.enabled()});
    }
  };
}

void FlashTest::fly(const std::string& product, const std::string& target, const Script& script) {
  world_.run(kSecond);  // the user takes a moment between two runs
  state_.ProductCode = product;
  state_.FlashTarget = target;
  state_.FlashPhase = 0;
  form1_.Command3.Disable();
  form1_.ProgressBar1.Show();
  form1_.lblTop.Caption = "";
  pages_ = {{world_.time.now(), ""}};
  loader_.play(script);
  run_.ConnectVelarc();
  pages_.push_back({world_.time.now(), ""});
}

const FlashTest::Page& FlashTest::page(const std::string& text, const Page& other) const {
  const auto found = std::ranges::find_if(pages_, [&](const Page& page) { return page.text.starts_with(text); });
  EXPECT_NE(found, pages_.end()) << "no page " << text;
  return text.empty() || found == pages_.end() ? other : *found;
}

double FlashTest::seconds(const std::string& from, const std::string& to) const {
  return static_cast<double>(page(to, pages_.back()).at - page(from, pages_.front()).at) / kSecond;
}

std::string FlashTest::ending() const {
  const auto flag = [](const char* name, bool on) { return std::string(on ? " +" : " -") + name; };
  return std::to_string(state_.FlashPhase) + " page " + std::to_string(state_.WizardPage) + flag("timedout", state_.TimedOut) +
         flag("port", wire_.isOpen()) + flag("next", form1_.Command3.Enabled) + flag("watchdog", form1_.Watchdog.enabled()) +
         flag("timer1", form1_.Timer1.enabled()) + flag("bar", form1_.ProgressBar1.Visible);
}

std::string FlashTest::outcome() const {
  for (const ProcessorReport& report : world_.supervision.activity.processors()) {
    if (report.target == state_.FlashTarget) {
      return nameOf(report.state);
    }
  }
  return "no report";
}

void FlashTest::image(const std::string& name, std::size_t size) const {
  Bytes content(size);
  for (std::size_t i = 0; i < size; ++i) {
    content[i] = static_cast<std::uint8_t>(i * 5);
  }
  world_.directory.write(name, content);
}

void FlashTest::frontImage(std::size_t codeBytes) {
  state_.FrontImage.clear();
  for (std::size_t i = 0; i < codeBytes; ++i) {
    const std::size_t value = i % 16;
    state_.FrontImage += std::to_string(value < 10 ? 48 + value : 55 + value) + "48";
  }
  state_.FrontCodeBytes = static_cast<std::int16_t>(codeBytes);
}

}  // namespace firmlane::test
