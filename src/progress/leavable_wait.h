// A wait that its user can leave while the handler that waits is still on the stack. Whoever left it has gone on already: what
// comes late belongs to nobody, and the handler that finds itself left returns without a trace.
#pragma once

namespace firmlane {

class LeavableWait {
 public:
  /// One wait, for as long as the handler runs that waits. A later one takes the place of an earlier that is still on the stack.
  class Stay {
   public:
    explicit Stay(LeavableWait& wait) : wait_(wait), number_(++wait.last_) { wait_.current_ = number_; }
    ~Stay() {
      if (!left()) {
        wait_.leave();
      }
    }
    Stay(const Stay&) = delete;
    Stay& operator=(const Stay&) = delete;

    /// To be asked whenever events have run.
    [[nodiscard]] bool left() const { return wait_.current_ != number_; }

   private:
    LeavableWait& wait_;
    int number_;
  };

  /// Somebody waits, and has not left.
  [[nodiscard]] bool underWay() const { return current_ != 0; }
  void leave() { current_ = 0; }

 private:
  int last_ = 0;
  int current_ = 0;
};

}  // namespace firmlane
