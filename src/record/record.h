// The last minutes of the program as text: what stood on the screen, what the user did, what went over the line and came over the
// web. It stands in memory, a fixed number of bytes, until somebody copies it; nothing is written to a disk unless somebody
// follows it. What the contact form holds never gets in. docs/record.md describes the text.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/recorder.h"
#include "record/byte_stream.h"
#include "record/record_ring.h"

namespace firmlane {

class Record : public Recorder {
 public:
  /// `clock` outlives it.
  explicit Record(const Clock& clock, std::size_t capacity = kCapacity) : clock_(clock), ring_(capacity) {}

  /// The whole record: the lines of `head`, each with its end, between the title and the entries.
  [[nodiscard]] std::string text(const std::string& head);
  /// Hands on each entry from now on as it is complete, without its line end; one that bytes may still join comes with the next,
  /// or with `settle`.
  void follow(std::function<void(const std::string& entry)> taker) { follower_ = std::move(taker); }
  /// Completes what is left open of bytes that have stopped coming.
  void settle();
  /// Completes it at once: nothing more will come.
  void settleAll() { closeTraffic(); }

  /// What the program is about from now on, in a few words.
  void doing(const std::string& what);

  /// The words of the last box or outcome that told a failure; empty when there was none.
  [[nodiscard]] const std::string& failure() const { return failure_; }
  /// What the line or the web server failed with last, with its number; empty when neither has failed.
  [[nodiscard]] const std::string& cause() const { return cause_; }
  /// What was being done when the failure was told; now, when none was.
  [[nodiscard]] const std::string& doingThen() const { return failure_.empty() ? doing_ : doingThen_; }

  void portOpened(int port, const LineSettings& settings) override;
  void portRefused(int port, const Failure& failure) override;
  void portSet(int port, const LineSettings& settings) override;
  void portClosed(int port) override;
  void portLost(int port, const Failure& failure) override;
  void sent(int port, ByteSpan bytes) override;
  void heard(int port, ByteSpan bytes) override;
  void formShown(const Form& form, bool modal) override;
  void formHidden(const Form& form) override;
  void formUnloaded(const Form& form) override;
  void controlChanged(const Control& control) override;
  void boxShown(const MessageBox& box) override;
  void boxAnswered(MessageButton button) override;
  void clicked(const Control& control) override;
  void chosen(const Control& list, int line) override;
  void typed(const Control& box, const std::string& text) override;
  void closed(const Form& form) override;
  void requested(const std::string& url) override;
  void answered(int status, const std::string& statedLength) override;
  void bodyTaken(ByteSpan bytes) override;
  void requestFailed(const Failure& failure) override;
  void requestDropped() override;
  void fileMet(const std::string& path) override;

  static constexpr std::size_t kCapacity = std::size_t{256} << 10U;
  static constexpr const char* kTitle = "Firmlane record 1";
  static constexpr const char* kEnd = "end of record";

 private:
  enum class Way { Sent, Heard };
  struct Traffic {
    Way way;
    int port;
    ByteStream bytes;
  };

  void add(const std::string& entry) { addAt(clock_.now(), entry); }
  void addAt(Micros time, const std::string& entry);
  void carry(Way way, int port, ByteSpan bytes, std::size_t inFull);
  void closeTraffic();
  void note(const Control& control);
  void forget(const Form& form);
  void fail(const std::string& words);
  [[nodiscard]] std::string clean(std::string text) const;

  const Clock& clock_;
  RecordRing ring_;
  std::function<void(const std::string&)> follower_;
  std::optional<Traffic> traffic_;  // what further bytes may join
  std::size_t heardInARow_ = 0;
  std::optional<ByteStream> body_;
  std::map<const Control*, std::string> said_;  // what stands on the screen
  std::map<std::string, std::string> files_;    // what was said of each
  std::string address_;                         // of the contact form, never written
  bool contactSent_ = false;                    // by the last request
  const Control* contactTyped_ = nullptr;       // the field of the contact form that is being filled
  std::string failure_;
  std::string cause_;
  std::string doing_;
  std::string doingThen_;
};

}  // namespace firmlane
