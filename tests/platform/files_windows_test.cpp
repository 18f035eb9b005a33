#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "platform/files.h"
#include "platform/system_path.h"
#include "platform/win32.h"
#include "world.h"

namespace firmlane::test {
namespace {

struct OpenElsewhere : testing::Test {
  OpenElsewhere() { directory.write("wls.bin", std::string("old")); }
  /// Another program has the file open and says what others may do meanwhile.
  [[nodiscard]] Handle open(DWORD share) const {
    return Handle(::CreateFileW((directory.path() / "wls.bin").c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  TemporaryDirectory directory;
  Files files{directory.path()};
  std::string path = files.path("wls.bin");
};

TEST_F(OpenElsewhere, AFileIsReplacedAsSoonAsAnotherProgramLetsGoOfIt) {
  Handle reader = open(FILE_SHARE_READ);
  ASSERT_TRUE(reader.valid());
  std::thread scanner([&reader] {
    ::Sleep(100);
    reader.close();
  });
  files.replaceText(path, "new");
  scanner.join();
  EXPECT_EQ(directory.read("wls.bin"), "new");
}

TEST_F(OpenElsewhere, AFileThatStaysOpenIsToldAndStaysWhole) {
  const Handle reader = open(FILE_SHARE_READ);
  try {
    files.replaceText(path, "new");
    FAIL();
  } catch (const Failure& failure) {
    EXPECT_TRUE(failure.number() == ERROR_SHARING_VIOLATION || failure.number() == ERROR_ACCESS_DENIED) << failure.number();
    EXPECT_NE(failure.description().find(path), std::string::npos);
  }
  EXPECT_EQ(directory.read("wls.bin"), "old");
  EXPECT_FALSE(directory.has("wls.bin.part"));
}

TEST_F(OpenElsewhere, AFileCopiedFromACdCanBeReplaced) {
  ::SetFileAttributesW((directory.path() / "wls.bin").c_str(), FILE_ATTRIBUTE_READONLY);
  files.replaceText(path, "new");
  EXPECT_EQ(directory.read("wls.bin"), "new");
}

TEST_F(OpenElsewhere, OnlyWhatIsNotThereCountsAsMissing) {
  std::filesystem::create_directory(directory.path() / "folder");
  const Handle writer = open(0);
  const std::map<std::string, int> numbers = {{"nothing", failure_number::kFileNotFound},
                                              {"no folder\\sn.wls", failure_number::kFileNotFound},
                                              {"folder", failure_number::kPathAccess},
                                              {"wls.bin", ERROR_SHARING_VIOLATION}};
  for (const auto& [name, number] : numbers) {
    try {
      static_cast<void>(Files::read(files.programDirectory() + "\\" + name));
      ADD_FAILURE() << name;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), number) << name << ": " << failure.description();
    }
  }
}

TEST_F(OpenElsewhere, ADirectoryMayBeAsLongAsTheSystemAllows) {
  std::filesystem::path deep = directory.path();
  for (int depth = 0; depth < 8; ++depth) {
    deep /= std::string(40, static_cast<char>('a' + depth));
    ASSERT_NE(::CreateDirectoryW(systemPath(deep.string()).c_str(), nullptr), 0) << deep;
  }
  const Files distant(deep);
  distant.replaceText(distant.path("HUBSL.s19"), "S9");
  EXPECT_EQ(Files::readText(distant.path("hubsl.S19")), "S9");
  EXPECT_EQ(distant.programDirectory(), deep.string());
}

}  // namespace
}  // namespace firmlane::test
