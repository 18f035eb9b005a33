// What the Windows halves share. Nothing else includes it.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// The system's names in capitals with A or W behind them must not become those of our own types.
#undef MessageBox

#include <functional>
#include <string>
#include <utility>

namespace firmlane {

/// A handle of the system that is closed with its owner.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() { close(); }

  [[nodiscard]] bool valid() const { return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr; }
  [[nodiscard]] HANDLE get() const { return handle_; }
  HANDLE release() { return std::exchange(handle_, INVALID_HANDLE_VALUE); }
  /// False when what was written could not be kept.
  bool close() { return !valid() || ::CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)) != 0; }

 private:
  HANDLE handle_;
};

/// Does something with a file until nobody else stands in the way, such as a virus scanner that looks at each new file or another
/// program that reads the old one; for half a second at most. Returns 0, or the system's error.
DWORD patiently(const std::function<bool()>& work);

/// Whether a plain file has the name; a link or a directory is none.
bool isPlainFile(const std::wstring& path);

}  // namespace firmlane
