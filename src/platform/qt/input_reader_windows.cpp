// Windows has no notifier for a pipe or a console, so a thread waits for the bytes and hands them to the event loop.
#include <fcntl.h>
#include <io.h>

#include <QObject>
#include <array>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

#include "platform/qt/input_reader.h"
#include "platform/qt/standard_input.h"
#include "platform/win32.h"

namespace firmlane {

void holdStandardStreams() {
  // A program with windows has no streams of its own; what it has to say goes to the console that it was started from.
  const bool silent = ::GetStdHandle(STD_OUTPUT_HANDLE) == nullptr && ::GetStdHandle(STD_ERROR_HANDLE) == nullptr;
  const bool console = silent && ::AttachConsole(ATTACH_PARENT_PROCESS) != 0;
  for (std::FILE* stream : {stdin, stdout, stderr}) {
    if (::_get_osfhandle(::_fileno(stream)) < 0) {
      const char* const output = console ? "CONOUT$" : "NUL";
      static_cast<void>(std::freopen(stream == stdin ? "NUL" : output, stream == stdin ? "r" : "w", stream));
    }
    ::_setmode(::_fileno(stream), _O_BINARY);  // the protocol is bytes: no CR before a LF, and no end at a Ctrl-Z
  }
  std::setvbuf(stderr, nullptr, _IONBF, 0);
  ::SetConsoleOutputCP(CP_UTF8);  // without effect where there is no console
}

namespace windows_input {  // with a name, as a class below holds it

/// What the thread and the program's side share. The thread may outlive the program's side, waiting for a line that never comes.
struct Shared {
  std::mutex mutex;
  std::condition_variable come;
  std::string bytes;
  bool over = false;
  QObject* heard = nullptr;  // told that something has come; null when nobody listens any more
  std::function<void()> take;
};

/// Some bytes of a file or a pipe; nothing at its end.
std::string readBytes(HANDLE input) {
  std::array<char, 16384> chunk{};
  DWORD count = 0;
  // A pipe hands on writes of no bytes too, as long as it has a writer; and of a message that is longer than the chunk the
  // beginning comes with an error.
  while (::ReadFile(input, chunk.data(), static_cast<DWORD>(chunk.size()), &count, nullptr) != 0 && count == 0 &&
         ::GetFileType(input) == FILE_TYPE_PIPE && ::PeekNamedPipe(input, nullptr, 0, nullptr, nullptr, nullptr) != 0) {
  }
  return {chunk.data(), count};
}

/// A line that somebody types, whatever the console's code page. Ctrl-Z at its beginning is the end, as everywhere on Windows.
std::string readTyped(HANDLE input) {
  constexpr wchar_t kEnd = 0x1A;
  std::array<wchar_t, 4096> typed{};
  DWORD count = 0;
  if (::ReadConsoleW(input, typed.data(), static_cast<DWORD>(typed.size()), &count, nullptr) == 0 || count == 0 ||
      typed[0] == kEnd) {
    return {};
  }
  std::string text(static_cast<std::size_t>(count) * 3, '\0');
  const int length = ::WideCharToMultiByte(CP_UTF8, 0, typed.data(), static_cast<int>(count), text.data(),
                                           static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void readUntilTheEnd(const std::shared_ptr<Shared>& shared) {
  const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0;
  const bool typed = ::GetConsoleMode(input, &mode) != 0;
  for (bool over = false; !over;) {
    const std::string bytes = typed ? readTyped(input) : readBytes(input);
    over = bytes.empty();
    const std::lock_guard lock(shared->mutex);
    shared->bytes += bytes;
    shared->over = over;
    shared->come.notify_all();
    if (shared->heard != nullptr) {
      QMetaObject::invokeMethod(shared->heard, shared->take, Qt::QueuedConnection);
    }
  }
}

}  // namespace windows_input

using namespace windows_input;

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
