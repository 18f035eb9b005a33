// Windows has no notifier for a pipe or a console, so a thread waits for the bytes and hands them to the event loop.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <QObject>
#include <array>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

#include "platform/qt/input_reader.h"
#include "platform/qt/standard_input.h"

namespace firmlane {

void holdStandardStreams() {
  // The protocol is bytes: no CR before a LF, and no end at a Ctrl-Z.
  for (std::FILE* stream : {stdin, stdout, stderr}) {
    ::_setmode(::_fileno(stream), _O_BINARY);
  }
}

namespace {

/// What the thread and the program's side share. The thread may outlive the program's side, waiting for a line that never comes.
struct Shared {
  std::mutex mutex;
  std::condition_variable come;
  std::string bytes;
  bool over = false;
  QObject* heard = nullptr;  // told that something has come; null when nobody listens any more
  std::function<void()> take;
};

void readUntilTheEnd(const std::shared_ptr<Shared>& shared) {
  std::array<char, 16384> chunk{};
  const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
  for (DWORD count = 1; count > 0;) {
    if (::ReadFile(input, chunk.data(), static_cast<DWORD>(chunk.size()), &count, nullptr) == 0) {
      count = 0;
    }
    const std::lock_guard lock(shared->mutex);
    shared->bytes.append(chunk.data(), count);
    shared->over = count == 0;
    shared->come.notify_all();
    if (shared->heard != nullptr) {
      QMetaObject::invokeMethod(shared->heard, shared->take, Qt::QueuedConnection);
    }
  }
}

}  // namespace

class InputReader::Half {
 public:
  explicit Half(std::function<void(std::string_view)> take) : take_(std::move(take)) {
    shared_->heard = &context_;
    shared_->take = [this] { takeIn(); };
    std::thread(readUntilTheEnd, shared_).detach();
  }
  ~Half() {
    const std::lock_guard lock(shared_->mutex);
    shared_->heard = nullptr;
  }
  Half(const Half&) = delete;
  Half& operator=(const Half&) = delete;

  void drain(int milliseconds) {
    while (!toldOfTheEnd_) {
      std::unique_lock lock(shared_->mutex);
      const auto somethingIsThere = [this] { return shared_->over || !shared_->bytes.empty(); };
      if (!shared_->come.wait_for(lock, std::chrono::milliseconds(milliseconds), somethingIsThere)) {
        return;
      }
      lock.unlock();
      takeIn();
    }
  }

 private:
  void takeIn() {
    std::unique_lock lock(shared_->mutex);
    const std::string bytes = std::exchange(shared_->bytes, {});
    const bool over = shared_->over;
    lock.unlock();
    if (!bytes.empty()) {
      take_(bytes);
    }
    if (over && !std::exchange(toldOfTheEnd_, true)) {
      take_({});
    }
  }

  std::function<void(std::string_view)> take_;
  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
  bool toldOfTheEnd_ = false;
  QObject context_;
};

InputReader::InputReader(std::function<void(std::string_view)> take) : half_(std::make_unique<Half>(std::move(take))) {}

InputReader::~InputReader() = default;

void InputReader::drain(int milliseconds) { half_->drain(milliseconds); }

bool InputReader::isPipe() { return ::GetFileType(::GetStdHandle(STD_INPUT_HANDLE)) == FILE_TYPE_PIPE; }

}  // namespace firmlane
