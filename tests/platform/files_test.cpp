#include "platform/files.h"

#include <gtest/gtest.h>

#include "faulty_disk.h"
#include "platform/system_path.h"
#include "world.h"

namespace firmlane::test {
namespace {

TEST(FilesTest, NamesAreFoundWithoutRegardToCase) {
  const TemporaryDirectory directory;
  const Files files(directory.path());
  directory.write("HUBSL.s19", "S9");
  EXPECT_EQ(Files::readText(files.path("hubSL.s19")), "S9");
  files.replaceText(files.path("hubsl.S19"), "S1");
  EXPECT_EQ(directory.read("HUBSL.s19"), "S1");
  EXPECT_EQ(files.path("hubsl.S19"), (directory.path() / "HUBSL.s19").string());
  EXPECT_EQ(files.path("new.bin"), (directory.path() / "new.bin").string());
  EXPECT_EQ(Files::length(files.path("HUBSL.s19")), 2);
}

TEST(FilesTest, NamesBeyondAsciiAreTheSameInEveryCall) {
  const TemporaryDirectory directory;
  const auto place = std::filesystem::path(u8"Kōji's Gerät");
  std::filesystem::create_directory(directory.path() / place);
  const Files files(directory.path() / place);
  EXPECT_EQ(systemPath(files.programDirectory()), directory.path() / place);
  for (const std::string name : {"wls.bin", "Men\xC3\xBC.exe", "Men\xFC.exe", "\xE2\x82\xAC.bin"}) {
    files.replaceText(files.path(name), name);
    EXPECT_EQ(Files::readText(files.path(name)), name);
    EXPECT_FALSE(Files::isMissing(files.path(name)));
  }
}

TEST(FilesTest, AFailedReplacementLeavesTheOldFile) {
  const TemporaryDirectory directory;
  const auto disk = std::make_shared<FaultyDisk>(directory.path().string());
  const Files files(directory.path(), noRecorder(), disk);
  const std::vector<const char*> operations = {"create", "write", "sync", "close", "rename", "sync of the directory"};
  for (const auto fault : {FaultyDisk::Fault::None, FaultyDisk::Fault::Error, FaultyDisk::Fault::FullLater}) {
    for (std::size_t at = 0; at < operations.size(); ++at) {
      SCOPED_TRACE(operations[at]);
      directory.write("wls.bin", std::string("old"));
      disk->plan(fault, static_cast<int>(at));
      bool failed = false;
      try {
        files.replaceText(files.path("wls.bin"), "the new one");
      } catch (const Failure&) {
        failed = true;
      }
      const bool strikes = fault == FaultyDisk::Fault::Error || (fault == FaultyDisk::Fault::FullLater && at <= 3);
      EXPECT_EQ(failed, strikes);
      const bool named = !strikes || at == operations.size() - 1;
      EXPECT_EQ(directory.read("wls.bin"), named ? "the new one" : "old");
      EXPECT_FALSE(directory.has("wls.bin.part"));
      EXPECT_EQ(disk->operations(), failed ? disk->operations() : 6);
    }
  }
}

}  // namespace
}  // namespace firmlane::test
