#include "platform/system_path.h"

#include "platform/win32.h"

namespace firmlane {

namespace {

// A directory may be so long, a file in it a little longer; the rest is for the endings that names get on the way.
constexpr std::size_t kLongestOfOld = 200;

std::wstring wide(const std::string& text) {
  const auto size = static_cast<int>(text.size());
  const int length = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
  if (length == 0) {  // no UTF-8, as a name in an update list
    return {reinterpret_cast<const unsigned char*>(text.data()),
            reinterpret_cast<const unsigned char*>(text.data()) + text.size()};
  }
  std::wstring result(static_cast<std::size_t>(length), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), length);
  return result;
}

}  // namespace

std::filesystem::path systemPath(const std::string& text) {
  const std::wstring given = wide(text);
  if (given.size() < kLongestOfOld || given.starts_with(L"\\\\?\\")) {
    return given;
  }
  // That form takes neither "/" nor "..", and needs the whole path.
  std::wstring whole(::GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
  whole.resize(::GetFullPathNameW(given.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
  if (whole.starts_with(L"\\\\?\\") || whole.starts_with(L"\\\\.\\")) {
    return whole;
  }
  return whole.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + whole.substr(2) : L"\\\\?\\" + whole;
}

}  // namespace firmlane
