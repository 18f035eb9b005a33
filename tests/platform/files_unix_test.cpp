#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <functional>
#include <map>

#include "platform/files.h"
#include "world.h"

namespace firmlane::test {
namespace {

TEST(FilesTest, TwoSpellingsSideBySideAreOneFile) {
  const TemporaryDirectory directory;
  const Files files(directory.path());
  directory.write("HUBSL.s19", "S9");
  directory.write("hubSL.s19", "another");
  EXPECT_EQ(files.path("hubSL.s19"), files.path("HUBSL.s19"));
}

TEST(FilesTest, AFileThatGrowsBeyondWhatTheSystemGrantsFails) {
  const TemporaryDirectory directory;
  const Files files(directory.path());
  directory.write("wls.bin", std::string("old"));
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, SIG_IGN);
  rlimit few = before;
  few.rlim_cur = 1000;
  ::setrlimit(RLIMIT_FSIZE, &few);
  EXPECT_THROW(files.replaceText(files.path("wls.bin"), std::string(20000, 'x')), Failure);
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(directory.read("wls.bin"), "old");
  EXPECT_FALSE(directory.has("wls.bin.part"));
}

TEST(FilesTest, AFileThatCannotBeOpenedOrReadFails) {
  const auto failure = [](const std::string& path) {
    try {
      static_cast<void>(Files::read(path));
    } catch (const Failure& met) {
      return met.number();
    }
    return 0;
  };
  EXPECT_EQ(failure("/proc/self/mem"), EIO) << "there is nothing at address 0";
  const TemporaryDirectory directory;
  directory.write("wls.bin", std::string("image"));
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 0;
  ::setrlimit(RLIMIT_NOFILE, &none);
  const int number = failure((directory.path() / "wls.bin").string());
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(number, EMFILE);
}

TEST(FilesTest, WhatHasTheNameOfATemporaryFileIsNotWrittenThrough) {
  namespace fs = std::filesystem;
  const TemporaryDirectory directory;
  const Files files(directory.path());
  const fs::path part = directory.path() / "list.txt.part";
  directory.write("victim", std::string("mine"));
  const std::map<std::string, std::function<void()>> obstacles = {
      {"link", [&] { fs::create_symlink("victim", part); }},
      {"dangling link", [&] { fs::create_symlink("nowhere", part); }},
      {"pipe", [&] { ::mkfifo(part.c_str(), S_IRUSR | S_IWUSR); }},
      {"directory", [&] { fs::create_directory(part); }},
  };
  for (const auto& [name, make] : obstacles) {
    SCOPED_TRACE(name);
    make();
    const auto type = fs::symlink_status(part).type();
    EXPECT_THROW(files.replaceText(files.path("list.txt"), "new"), Failure);
    EXPECT_EQ(fs::symlink_status(part).type(), type);
    EXPECT_EQ(directory.read("victim"), "mine");
    fs::remove(part);
  }
  directory.write("list.txt.part", std::string("left by a program that was killed"));
  files.replaceText(files.path("list.txt"), "new");
  EXPECT_EQ(directory.read("list.txt"), "new");
  EXPECT_FALSE(fs::exists(part));
}

TEST(FilesTest, OnlyWhatIsNotThereCountsAsMissing) {
  namespace fs = std::filesystem;
  const TemporaryDirectory directory;
  const fs::path& here = directory.path();
  fs::create_directory(here / "directory");
  fs::create_symlink(here / "not mounted/sn.wls", here / "share");
  fs::create_symlink(here / "loop", here / "loop");
  directory.write("file", "x");
  const std::map<std::string, std::pair<int, const char*>> failures = {
      {"nothing", {failure_number::kFileNotFound, "File not found: "}},
      {"directory", {failure_number::kPathAccess, "Not a file: "}},
      {"share", {ENOENT, ""}},
      {"loop", {ELOOP, ""}},
      {"file/sn.wls", {ENOTDIR, ""}},
      {std::string(300, 'x'), {ENAMETOOLONG, ""}}};
  for (const auto& [name, expected] : failures) {
    try {
      static_cast<void>(Files::read((here / name).string()));
      ADD_FAILURE() << name;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), expected.first) << name << ": " << failure.description();
      EXPECT_TRUE(failure.description().starts_with(expected.second)) << failure.description();
    }
  }
}

}  // namespace
}  // namespace firmlane::test
