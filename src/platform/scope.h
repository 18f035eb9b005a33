// Guards: what must be undone when a scope is left, however that happens.
#pragma once

#include <functional>
#include <utility>

namespace firmlane {

/// Does something when its scope is left.
class AtEnd {
 public:
  explicit AtEnd(std::function<void()> action) : action_(std::move(action)) {}
  ~AtEnd() { action_(); }
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;

 private:
  std::function<void()> action_;
};

/// Raises a flag for as long as it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  ~Raised() { flag_ = false; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
};

}  // namespace firmlane
