#include "platform/files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>

#include "world.h"

namespace firmlane::test {
namespace {

TEST(FilesTest, NamesAreFoundWithoutRegardToCase) {
  const TemporaryDirectory directory;
  const Files files(directory.path());
  directory.write("HUBSL.s19", "S9");
  EXPECT_EQ(Files::readText(files.path("hubSL.s19")), "S9");
  Files::replaceText(files.path("hubsl.S19"), "S1");
  EXPECT_EQ(directory.read("HUBSL.s19"), "S1");
  EXPECT_FALSE(directory.has("hubsl.S19"));
  directory.write("hubSL.s19", "another");
  EXPECT_EQ(files.path("hubSL.s19"), files.path("HUBSL.s19")) << "two spellings side by side are still one file";
  EXPECT_EQ(files.path("new.bin"), (directory.path() / "new.bin").string());
}

TEST(FilesTest, AFailedReplacementLeavesTheOldFile) {
  const TemporaryDirectory directory;
  const Files files(directory.path());
  directory.write("wls.bin", "old");
  std::filesystem::create_directory(directory.path() / "wls.bin.part");
  EXPECT_THROW(Files::replaceText(files.path("wls.bin"), "new"), Failure);
  EXPECT_EQ(directory.read("wls.bin"), "old");
}

TEST(FilesTest, OnlyWhatIsNotThereCountsAsMissing) {
  namespace fs = std::filesystem;
  const TemporaryDirectory directory;
  const fs::path& here = directory.path();
  fs::create_directory(here / "directory");
  fs::create_symlink(here / "not mounted/sn.wls", here / "share");
  fs::create_symlink(here / "loop", here / "loop");
  directory.write("file", "x");
  const std::map<std::string, int> numbers = {{"nothing", failure_number::kFileNotFound},
                                              {"directory", failure_number::kPathAccess},
                                              {"share", ENOENT},
                                              {"loop", ELOOP},
                                              {"file/sn.wls", ENOTDIR},
                                              {std::string(300, 'x'), ENAMETOOLONG}};
  for (const auto& [name, number] : numbers) {
    try {
      static_cast<void>(Files::read((here / name).string()));
      ADD_FAILURE() << name;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), number) << name << ": " << failure.description();
    }
  }
}

}  // namespace
}  // namespace firmlane::test
