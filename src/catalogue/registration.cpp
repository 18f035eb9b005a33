#include "catalogue/registration.h"

#include <algorithm>
#include <charconv>

#include "platform/scope.h"

namespace firmlane {

namespace {

constexpr const char* kPath = "/Firmlane/FLusers.asp?e=";
constexpr const char* kBlank = "BLANK";
constexpr int kLimit = 10;            // ticks of Watchdog
constexpr int kTick = 1000;           // ms
constexpr int kLook = 100;            // ms between two looks at TimedOut
constexpr std::int16_t kTaken = 1;    // the server's answer for an entry that it took
constexpr std::int16_t kStarted = 1;  // RegisterState: nothing heard of the request yet

std::int16_t answerNumber(const std::string& answer) {
  constexpr const char* kWhite = " \t\r\n";
  const std::size_t first = std::min(answer.find_first_not_of(kWhite), answer.size());
  const std::size_t end = answer.find_last_not_of(kWhite) + 1;
  std::int16_t number = 0;
  const auto [stop, error] = std::from_chars(answer.data() + first, answer.data() + std::max(first, end), number);
  if (error == std::errc::result_out_of_range) {
    throw Failure(failure_number::kOverflow, "The registration server's answer is too large a number");
  }
  if (error != std::errc() || stop != answer.data() + end) {
    throw Failure(failure_number::kTypeMismatch, answer.empty() ? "The registration server has not answered"
                                                                : "The registration server's answer is not a number");
  }
  return number;
}

}  // namespace

Registration::Registration(FormHost& host, HttpClient& http, Download& download, Supervision& supervision, RunState& state,
                           Form1& form1, std::string server)
    : host_(host),
      http_(http),
      download_(download),
      supervision_(supervision),
      state_(state),
      form1_(form1),
      server_(std::move(server)) {}

void Registration::RegisterUserData() {
  if (state_.ContactBlank) {
    // Nobody hears of the answer, so nobody waits for it. The next request drops one that is still on its way.
    http_.Execute(request());
    return;
  }
  const Raised registering(download_.Registering);
  const AtEnd stopClock([this] { form1_.Watchdog.stop(); });
  while (tryOnce()) {
  }
}

bool Registration::tryOnce() {
  download_.RegisterState = kStarted;
  state_.TimedOut = false;
  supervision_.setLimit(kLimit);
  form1_.Watchdog.start(kTick);
  const std::string answer = fetch();
  const std::int16_t number = state_.TimedOut ? std::int16_t{0} : answerNumber(answer);
  while (download_.RegisterState != kRegistrationUnderWay && !state_.TimedOut) {
    host_.queue().WaitEvents();
  }
  if (state_.TimedOut) {
    return askAgain("Timeout sending registration information to Tolvex!\rTry again?");
  }
  if (number == kTaken) {
    host_.showMessage("Thank you for registering with Tolvex!");
    return false;
  }
  return askAgain("Error sending registration information to Tolvex!\rTry again?");
}

std::string Registration::request() const {
  const auto field = [this](const TextBox& box) { return state_.ContactBlank ? std::string(kBlank) : box.Text.get(); };
  return server_ + kPath + field(form1_.txtEmail) + "," + field(form1_.txtFirst) + "," + field(form1_.txtLast) + "," +
         (state_.ProductCode == "VC" ? "Velarc" : "Wireless");
}

std::string Registration::fetch() {
  // The client's own limit is far longer than the time that the user is asked to wait here.
  Timer look(host_.queue());
  look.OnTimer = [this] {
    if (state_.TimedOut) {
      http_.Cancel();
    }
  };
  look.start(kLook);
  try {
    return http_.OpenURL(request());
  } catch (const Failure&) {
    if (!state_.TimedOut) {
      throw;
    }
    return {};
  }
}

bool Registration::askAgain(const std::string& what) {
  return host_.showMessageBox({.text = what, .buttons = MessageButtons::YesNo}) == MessageButton::Yes;
}

}  // namespace firmlane
