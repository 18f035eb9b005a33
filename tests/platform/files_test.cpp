#include "platform/files.h"

#include <gtest/gtest.h>

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

TEST(FilesTest, WhatCannotBeReadFailsWithAWordForTheUser) {
  const TemporaryDirectory directory;
  const Files files(directory.path());
  try {
    static_cast<void>(Files::length(files.path("wls.bin")));
    FAIL();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure_number::kFileNotFound);
  }
  std::filesystem::create_directory(directory.path() / "vrc.bin");
  EXPECT_THROW(static_cast<void>(Files::read(files.path("vrc.bin"))), Failure);
}

}  // namespace
}  // namespace firmlane::test
