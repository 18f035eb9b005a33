#include "platform/file_lock.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "world.h"

namespace firmlane::test {
namespace {

/// Another process, for what only two of them can show. `work` ends it with what it returns.
pid_t fork(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::_exit(work());
  }
  return child;
}

int resultOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

FileLock take(const std::string& path) {
  for (;;) {
    if (auto lock = FileLock::tryTake(path)) {
      return std::move(*lock);
    }
    ::usleep(100);
  }
}

TEST(FileLockTest, ProcessesThatCountInOneFileLoseNoCount) {
  constexpr int kRounds = 200;
  const TemporaryDirectory directory;
  directory.write("count", "0");
  const std::string lock = (directory.path() / "lock").string();
  std::vector<pid_t> children(4);
  for (pid_t& child : children) {
    child = fork([&] {
      for (int i = 0; i < kRounds; ++i) {
        const FileLock held = take(lock);
        directory.write("count", std::to_string(std::stoi(directory.read("count")) + 1));
      }
      return 0;
    });
  }
  for (const pid_t child : children) {
    EXPECT_EQ(resultOf(child), 0);
  }
  EXPECT_EQ(directory.read("count"), std::to_string(4 * kRounds));
}

TEST(FileLockTest, AKilledHolderLeavesNoLockBehind) {
  const TemporaryDirectory directory;
  const std::string lock = (directory.path() / "lock").string();
  const pid_t holder = fork([&] {
    const FileLock held = take(lock);
    directory.write("held", "");
    ::pause();
    return 0;
  });
  while (!directory.has("held")) {
    ::usleep(1000);
  }
  EXPECT_FALSE(FileLock::tryTake(lock));
  ::kill(holder, SIGKILL);
  EXPECT_EQ(resultOf(holder), SIGKILL);
  EXPECT_TRUE(FileLock::tryTake(lock));
}

TEST(FileLockTest, WhoeverMayWriteToTheDirectoryMayTakeTheLock) {
  namespace fs = std::filesystem;
  const TemporaryDirectory directory;
  const std::string lock = (directory.path() / "lock").string();
  fs::permissions(directory.path(), fs::perms::owner_all | fs::perms::group_all | fs::perms::others_read);
  ASSERT_TRUE(FileLock::tryTake(lock));
  EXPECT_EQ(fs::status(lock).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read |
                                                fs::perms::group_write | fs::perms::others_read);
  EXPECT_THROW(static_cast<void>(FileLock::tryTake((directory.path() / "no" / "lock").string())), Failure);
  fs::create_symlink("/dev/null", directory.path() / "link");
  EXPECT_THROW(static_cast<void>(FileLock::tryTake((directory.path() / "link").string())), Failure) << "it is somebody else's";
}

}  // namespace
}  // namespace firmlane::test
