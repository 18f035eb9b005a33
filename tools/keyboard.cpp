// For tools/check-windows: starts a program at a console of its own and types at it. No shell does: what it has is pipes and
// files.
//
//   keyboard LINES OUTPUT PROGRAM ARGUMENT...
//
// Types each line of the file LINES (UTF-8) when the program is up; "^Z" and "^C" are those keys with Ctrl. What the program says
// goes into the file OUTPUT. Ends with the program's status, or with 99 when it has not ended within ten seconds.
#include <windows.h>

#include <fstream>
#include <string>

namespace {

constexpr DWORD kUntilItIsUp = 3000;  // ms
constexpr DWORD kPatience = 10000;
constexpr UINT kEndless = 99;

void press(HANDLE console, wchar_t letter) {
  const bool control = letter < L' ' && letter != L'\r';
  const auto key = static_cast<WORD>(control ? letter + L'@' : letter == L'\r' ? VK_RETURN : 0);
  INPUT_RECORD record{.EventType = KEY_EVENT};
  record.Event.KeyEvent = {.bKeyDown = TRUE,
                           .wRepeatCount = 1,
                           .wVirtualKeyCode = key,
                           .uChar = {.UnicodeChar = letter},
                           .dwControlKeyState = control ? LEFT_CTRL_PRESSED : 0UL};
  for (const BOOL down : {TRUE, FALSE}) {
    record.Event.KeyEvent.bKeyDown = down;
    DWORD written = 0;
    ::WriteConsoleInputW(console, &record, 1, &written);
  }
}

void type(HANDLE console, std::string line) {
  const bool key = line.size() == 2 && line[0] == '^';
  line = key ? std::string(1, static_cast<char>(line[1] - '@')) : line;
  std::wstring letters(line.size(), L'\0');
  const int length = ::MultiByteToWideChar(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), letters.data(),
                                           static_cast<int>(letters.size()));
  letters.resize(static_cast<std::size_t>(length));
  for (const wchar_t letter : letters + L'\r') {
    press(console, letter);
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 4) {
    return 2;
  }
  ::FreeConsole();
  ::AllocConsole();
  SECURITY_ATTRIBUTES inherited{.nLength = sizeof inherited, .bInheritHandle = TRUE};
  const HANDLE console = ::CreateFileW(L"CONIN$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                       OPEN_EXISTING, 0, nullptr);
  const HANDLE output = ::CreateFileW(argv[2], GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
  std::wstring command;
  for (int i = 3; i < argc; ++i) {
    command += L'"' + std::wstring(argv[i]) + L"\" ";
  }
  STARTUPINFOW start{.cb = sizeof start, .dwFlags = STARTF_USESTDHANDLES};
  start.hStdInput = console;
  start.hStdOutput = output;
  start.hStdError = output;
  PROCESS_INFORMATION program{};
  if (::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &program) == 0) {
    return 1;
  }
  ::SetConsoleCtrlHandler(nullptr, TRUE);  // Ctrl-C is for the program; set behind its start, as it would take this over
  ::Sleep(kUntilItIsUp);
  std::ifstream lines(argv[1]);
  for (std::string line; std::getline(lines, line);) {
    type(console, line);
  }
  DWORD status = kEndless;
  if (::WaitForSingleObject(program.hProcess, kPatience) != WAIT_OBJECT_0) {
    ::TerminateProcess(program.hProcess, kEndless);
  } else {
    ::GetExitCodeProcess(program.hProcess, &status);
  }
  return static_cast<int>(status);
}
