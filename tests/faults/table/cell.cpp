#include "cell.h"

#include <algorithm>

#include "injection.h"

namespace firmlane::test {

namespace {

constexpr Micros kPatience = 300 * kSecond;   // longer than any limit of the program behind a fault
constexpr Micros kRecovery = 3600 * kSecond;  // for the whole way to a programmed unit
constexpr Micros kGlance = 2 * kSecond;
constexpr Micros kTired = 150 * kSecond;  // after so long on one page he starts the program anew

struct CellOver {};
struct StartAnew {};

class CellPlayer {
 public:
  CellPlayer(const Run& run, Moment moment, std::optional<Fault> fault, std::size_t streamLength)
      : world_(run), moment_(moment), fault_(fault), streamLength_(streamLength) {
    world_.bench.onHeard = [this] { onHeard(); };
    world_.bench.unit.onChange = [this] { onUnit(); };
  }

  CellResult play() {
    for (bool first = true;; first = false) {
      try {
        if (!first) {
          heal(world_);
        }
        world_.start();
        world_.live([this] { look(); });
      } catch (const CellOver&) {
        break;
      } catch (const StartAnew&) {
      } catch (const PowerLost&) {
        result_.outcome.ended = true;
        recover();
      } catch (const ProgramEnded&) {
        if (stage_ == Stage::Recovering) {
          fail("the program ended on the way to a programmed unit");
          break;
        }
        result_.outcome.ended = true;
        recover();
      } catch (const NothingCanHappen&) {
        fail("a wait that nothing can end");
        break;
      }
    }
    return result_;
  }

  [[nodiscard]] std::size_t heard() const { return heard_; }

 private:
  enum class Stage { Towards, Watching, Next, Recovering };

  void look() {
    checkWords();
    switch (stage_) {
      case Stage::Towards:
        return lookTowards();
      case Stage::Watching:
        return lookWatching();
      case Stage::Next:
      case Stage::Recovering:
        return lookRecovering();
    }
  }

  void lookTowards() {
    const RunState& state = world_.state();
    const bool onLine = world_.wire.isOpen();
    if (!state.FlashTarget.empty() && onLine && world_.unit().phase == sim::Phase::Running) {
      meetAt(Moment::Announce);
    }
    if (state.AutoPage == 5) {
      meetAt(Moment::Between);
    }
    if (state.AutoPage == 6 && onLine) {
      meetAt(Moment::FinalRead);
    }
    if (world_.saysSuccess() || world_.time.now() > kRecovery) {
      throw CellOver();
    }
    world_.owner.look(*world_.program);
  }

  void onHeard() {
    const sim::UnitState& unit = world_.unit();
    if (unit.phase == sim::Phase::Receiving && stage_ == Stage::Towards) {
      heard_ = std::max(heard_, unit.received);
      if (unit.received == 1) {
        meetAt(Moment::FirstByte);
      } else if (unit.received == streamLength_ / 2) {
        meetAt(Moment::MiddleByte);
      } else if (unit.received + 1 == streamLength_) {
        meetAt(Moment::LastByte);
      }
    }
    if (unit.phase == sim::Phase::Running && sent(13, 39)) {
      meetAt(Moment::SerialNumber);
    }
    if (unit.phase == sim::Phase::Running && sent(9, 10)) {
      meetAt(Moment::Preset);
    }
  }

  [[nodiscard]] bool sent(std::size_t size, std::uint8_t code) const {
    const Bytes& bytes = world_.wire.sent();
    return bytes.size() >= size && bytes[bytes.size() - size] == 0x02 && bytes[bytes.size() - size + 4] == code &&
           bytes.back() == 0x80;
  }

  void onUnit() {
    if (world_.unit().phase == sim::Phase::Erasing) {
      meetAt(Moment::Erase);
    } else if (world_.unit().phase == sim::Phase::Judging) {
      heard_ = std::max(heard_, world_.unit().received);
      meetAt(Moment::Verdict);
    }
  }

  void meetAt(Moment moment) {
    if (moment != moment_ || !fault_ || stage_ != Stage::Towards || planned_) {
      return;
    }
    planned_ = true;
    // A moment later, when the unit and the program are done with what they are at.
    world_.time.after(1, [this] { meet(); });
  }

  void meet() {
    result_.met = true;
    stage_ = Stage::Watching;
    since_ = world_.time.now();
    world_.owner.pressesOn = false;
    world_.owner.boxes.clear();
    inject(world_, moment_, *fault_);
  }

  void lookWatching() {
    world_.owner.look(*world_.program);
    if (world_.atRest() && world_.time.now() - since_ > kGlance) {
      capture(false);
      checkRest();
      recover();
    } else if (world_.time.now() - since_ > kPatience && !world_.program->host().messageBox()) {
      capture(true);
      recover();
    }
  }

  void capture(bool waits) {
    Outcome& outcome = result_.outcome;
    outcome.waits = waits;
    for (const std::string& box : world_.owner.boxes) {
      if (std::find(outcome.boxes.begin(), outcome.boxes.end(), firstLine(box)) == outcome.boxes.end()) {
        outcome.boxes.push_back(firstLine(box));
      }
    }
    if (world_.program->host().onScreen().empty()) {
      return;
    }
    outcome.page = Owner::pageText(*world_.program);
    const OutcomeLabel& label = world_.outcomeLabel();
    if (label.Visible) {
      outcome.kind = label.Kind;
      outcome.words = firstLine(label.Caption);
    }
    outcome.portOpen = world_.wire.isOpen();
  }

  void recover() {
    heal(world_);
    stage_ = result_.outcome.ended ? Stage::Recovering : Stage::Next;
    since_ = world_.time.now();
    world_.owner.pressesOn = true;
    world_.owner.lookAgain();
  }

  void lookRecovering() {
    Program& program = *world_.program;
    const std::string page = Owner::pageText(program);
    if (stage_ == Stage::Next) {
      // One press, and a glance at where it leads.
      world_.owner.look(program);
      world_.owner.pressesOn = false;
      if (world_.time.now() - since_ > kGlance) {
        result_.outcome.next = program.host().messageBox() ? firstLine(program.host().messageBox()->text) : page;
        stage_ = Stage::Recovering;
        since_ = world_.time.now();
        world_.owner.pressesOn = true;
      }
      return;
    }
    const bool leftBehind = world_.outcomeLabel().Visible && world_.outcomeLabel().Kind == std::string("caution");
    if ((world_.saysSuccess() && !leftBehind) ||
        (world_.unitIsGood() && program.host().messageBox() &&
         program.host().messageBox()->text.find("firmware is current") != std::string::npos)) {
      if (!world_.unitIsGood()) {
        fail("success is told, but the unit is not programmed");
      }
      throw CellOver();
    }
    if (page != page_) {
      page_ = page;
      pageSince_ = world_.time.now();
    }
    if (page.find("did not reprogram correctly") != std::string::npos || world_.time.now() - pageSince_ > kTired) {
      pageSince_ = world_.time.now();
      throw StartAnew();
    }
    if (world_.time.now() - since_ > kRecovery) {
      fail("the unit could not be programmed afterwards; on the screen: " + Owner::allText(program));
      throw CellOver();
    }
    world_.owner.look(program);
  }

  void checkRest() {
    const Outcome& outcome = result_.outcome;
    if (outcome.portOpen && world_.state().AutoPage != 19) {
      fail("a port is open at rest");
    }
    const sim::ProcessorState* processor = world_.unit().find(world_.run_.processor);
    // A unit that says itself that it is programmed is believed until it is read.
    if (processor->blank && fault_ != Fault::EarlyVerdict && outcome.boxes.empty() && outcome.kind != "failure" &&
        outcome.page.find("stopped responding") == std::string::npos) {
      fail("a run that went wrong, and nobody is told");
    }
  }

  void checkWords() {
    if (!world_.program || world_.unitIsGood()) {
      return;
    }
    const auto& box = world_.program->host().messageBox();
    if (box && box->text.find("firmware is current") != std::string::npos) {
      fail("a unit that is behind is called current");
    }
    const bool qualified = world_.outcomeLabel().Visible && world_.outcomeLabel().Kind == std::string("caution");
    if (Owner::pageText(*world_.program).starts_with("Programming Complete.") && !qualified) {
      fail("programming is called complete, and it is not");
    }
  }

  void fail(const std::string& what) {
    if (result_.broken.empty()) {
      result_.broken = what;
    }
  }

  CellWorld world_;
  Moment moment_;
  std::optional<Fault> fault_;
  std::size_t streamLength_;
  std::size_t heard_ = 0;
  Stage stage_ = Stage::Towards;
  Micros since_ = 0;
  bool planned_ = false;
  std::string page_;
  Micros pageSince_ = 0;
  CellResult result_;
};

}  // namespace

CellResult playCell(const Run& run, Moment moment, Fault fault, std::size_t streamLength) {
  return CellPlayer(run, moment, fault, streamLength).play();
}

std::size_t streamLengthOf(const Run& run) {
  CellPlayer player(run, Moment::Announce, std::nullopt, 0);
  player.play();
  return player.heard();
}

}  // namespace firmlane::test
