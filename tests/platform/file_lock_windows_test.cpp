#include <gtest/gtest.h>

#include "platform/file_lock.h"
#include "platform/system_path.h"
#include "platform/win32.h"
#include "world.h"

namespace firmlane::test {
namespace {

constexpr const wchar_t* kHeld = L"FIRMLANE_TEST_HELD_LOCK";

/// What another program does: it takes the lock that the environment names and never gives it back.
TEST(FileLockTest, DISABLED_TakesTheLockAndStays) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetEnvironmentVariableW(kHeld, path.data(), MAX_PATH));
  const auto held = FileLock::tryTake(std::filesystem::path(path).string());
  ::Sleep(held ? INFINITE : 0);
}

TEST(FileLockTest, AKilledHolderLeavesNoLockBehind) {
  const TemporaryDirectory directory;
  const std::filesystem::path path = directory.path() / L"Z\u00E4hler.lock";
  ::SetEnvironmentVariableW(kHeld, path.c_str());
  std::wstring self(MAX_PATH, L'\0');
  self.resize(::GetModuleFileNameW(nullptr, self.data(), MAX_PATH));
  std::wstring command = L'"' + self + L"\" --gtest_also_run_disabled_tests --gtest_filter=*TakesTheLockAndStays --gtest_brief=1";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  ASSERT_NE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, 0, 0, nullptr, nullptr, &start, &process), 0);
  const Handle holder(process.hProcess);
  const Handle thread(process.hThread);
  bool held = false;
  for (int tries = 0; tries < 1000 && !held; ++tries) {
    ::Sleep(10);
    held = std::filesystem::exists(path) && !FileLock::tryTake(path.string());
  }
  EXPECT_TRUE(held);
  ::TerminateProcess(holder.get(), 1);
  ::WaitForSingleObject(holder.get(), INFINITE);
  EXPECT_TRUE(FileLock::tryTake(path.string()));
}

TEST(FileLockTest, TwoPartsOfAProgramExcludeEachOtherAndAnAbsentFolderIsToldAtOnce) {
  const TemporaryDirectory directory;
  const std::string path = (directory.path() / "lock").string();
  {
    const auto held = FileLock::tryTake(path);
    EXPECT_TRUE(held);
    EXPECT_FALSE(FileLock::tryTake(path));
  }
  EXPECT_TRUE(FileLock::tryTake(path));
  EXPECT_THROW(static_cast<void>(FileLock::tryTake((directory.path() / "no" / "lock").string())), Failure);
}

}  // namespace
}  // namespace firmlane::test
