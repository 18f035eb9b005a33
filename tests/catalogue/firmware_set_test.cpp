#include "catalogue/firmware_set.h"

#include <gmock/gmock.h>

#include "faulty_disk.h"
#include "platform/partial_file.h"
#include "world.h"

namespace firmlane::test {
namespace {

constexpr const char* kNames[] = {"wls.bin", "HUBSL.s19", "RFSL.s19", "FNTLCDc.s19"};
constexpr const char* kSystems = "LWXSys.lwx";

std::string row(const std::string& version) { return version + std::string(kSystemRowBytes - version.size(), ' '); }
Bytes rowBytes(const std::string& version) {
  const std::string text = row(version);
  return {text.begin(), text.end()};
}

struct SetOnDisk : testing::Test {
  TemporaryDirectory directory;
  std::shared_ptr<FaultyDisk> disk;
  std::unique_ptr<Files> files;

  /// A directory with a set of before, one of its files under a name in other letters.
  void start() {
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
      std::filesystem::remove_all(entry.path());
    }
    for (const char* name : kNames) {
      directory.write(spelt(name), "old " + std::string(name));
    }
    directory.write(kSystems, row("old") + row("seen"));
    disk = std::make_shared<FaultyDisk>(directory.path().string());
    files = std::make_unique<Files>(directory.path(), noRecorder(), disk);
  }
  static std::string spelt(const std::string& name) { return name == "HUBSL.s19" ? "hubsl.S19" : name; }
  void store(FirmwareSet& set, const std::string& name) const {
    PartialFile file(files->disk(), set.place(name));
    for (const std::string& piece : {std::string("new "), name}) {
      file.write({reinterpret_cast<const std::uint8_t*>(piece.data()), piece.size()});
    }
    file.complete();
  }
  void fetch() const {
    FirmwareSet set(*files);
    FirmwareSet::Fetch fetch(set);
    for (const char* name : kNames) {
      store(set, name);
    }
    fetch.complete(kSystems, rowBytes("new"));
  }
  void settle() const { FirmwareSet(*files).settle(); }
  /// "old", "new", or what is mixed up or left over.
  [[nodiscard]] std::string found() const {
    std::string told;
    for (const char* name : kNames) {
      told += directory.read(spelt(name)).substr(0, 3) + " ";
    }
    const std::string systems = directory.read(kSystems);
    told += systems.substr(0, 3) + (systems.substr(kSystemRowBytes) == row("seen") ? "" : " rows lost");
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
      const std::string name = entry.path().filename().string();
      const bool wanted = name == kSystems || name == "firmlane.lock" ||
                          std::any_of(std::begin(kNames), std::end(kNames), [&](const char* n) { return spelt(n) == name; });
      told += wanted ? "" : " " + name;
    }
    return told == "old old old old old" ? "old" : told == "new new new new new" ? "new" : told;
  }
  /// Operations that the whole of it takes.
  [[nodiscard]] int operations() {
    start();
    disk->plan(FaultyDisk::Fault::None, 0);
    fetch();
    EXPECT_EQ(found(), "new");
    return disk->operations();
  }
};

TEST_F(SetOnDisk, APowerFailureAnywhereLeavesTheOldSetOrTheNewOne) {
  const int operations = this->operations();
  std::map<std::string, int> outcomes;
  for (int at = 0; at <= operations; ++at) {
    for (unsigned seed = 0; seed < 6; ++seed) {
      SCOPED_TRACE("operation " + std::to_string(at) + ", seed " + std::to_string(seed));
      std::mt19937 random(seed);
      start();
      disk->plan(FaultyDisk::Fault::Power, at);
      try {
        fetch();
      } catch (const PowerFailed&) {
        EXPECT_TRUE(disk->withoutPower());
      }
      const bool complete = !disk->withoutPower();
      EXPECT_EQ(complete, at == operations);
      disk->reboot(random);
      for (int again = static_cast<int>(seed % 3); again > 0; --again) {  // it fails while things are put right, too
        disk->plan(FaultyDisk::Fault::Power, static_cast<int>(random() % 8));
        try {
          settle();
        } catch (const PowerFailed&) {
          EXPECT_TRUE(disk->withoutPower());
        }
        if (disk->withoutPower()) {
          disk->reboot(random);
        }
        disk->plan(FaultyDisk::Fault::None, 0);
      }
      settle();
      ++outcomes[found()];
      EXPECT_TRUE(!complete || found() == "new");
    }
  }
  EXPECT_THAT(outcomes,
              testing::UnorderedElementsAre(testing::Pair("old", testing::Gt(45)), testing::Pair("new", testing::Gt(25))));
}

TEST_F(SetOnDisk, AnOperationThatFailsLeavesTheOldSetOrTheNewOne) {
  const int operations = this->operations();
  for (const auto fault : {FaultyDisk::Fault::Error, FaultyDisk::Fault::FullLater}) {
    for (int at = 0; at < operations; ++at) {
      SCOPED_TRACE("operation " + std::to_string(at));
      start();
      disk->plan(fault, at);
      bool told = false;
      try {
        fetch();
      } catch (const Failure&) {
        told = true;
      }
      disk->plan(FaultyDisk::Fault::None, 0);
      settle();
      EXPECT_THAT(found(), testing::AnyOf("new", told ? "old" : "new"));
      fetch();
      EXPECT_EQ(found(), "new") << "nothing is left that stands in the way";
    }
  }
}

TEST_F(SetOnDisk, ASetThatIsNotCompleteLeavesNothing) {
  start();
  {
    FirmwareSet set(*files);
    {
      const FirmwareSet::Fetch fetch(set);
      store(set, "wls.bin");
      directory.write("RFSL.s19.new.part", std::string("a piece"));
      disk->plan(FaultyDisk::Fault::None, 0);
    }
    EXPECT_EQ(set.place("wls.bin"), files->path("wls.bin")) << "the next file comes by itself";
  }
  EXPECT_EQ(found(), "old");
  for (const char* left : {"wls.bin.new", "FNTLCDc.s19.new.part", "firmlane.set.part"}) {
    directory.write(left, std::string("from a program that was killed"));
    disk->plan(FaultyDisk::Fault::None, 0);
    settle();
    EXPECT_EQ(found(), "old");
  }
  std::filesystem::remove(directory.path() / "firmlane.lock");
  std::filesystem::create_directory(directory.path() / "firmlane.lock");
  fetch();
  EXPECT_EQ(found(), "new") << "a share without locks";
}

TEST_F(SetOnDisk, ADamagedRecordMeansThatThereIsNoSetUntilAWholeOneHasCome) {
  const std::string good = "firmlane set 1\nLWXSys.lwx\nwls.bin\nend\n" + row("new");
  start();
  settle();
  EXPECT_FALSE(directory.has("firmlane.lock")) << "there is nothing to do";
  directory.write("firmlane.set", good);
  EXPECT_NO_THROW(settle()) << "a record that an earlier version has written";
  directory.write("wls.bin.new", std::string("new"));
  directory.write("firmlane.set", good);
  {
    FirmwareSet set(*files);
    const FirmwareSet::Fetch another(set);
  }
  EXPECT_EQ(directory.read("wls.bin"), "new") << "what was on its way is brought to its end before another one begins";
  for (const std::string& record :
       {std::string(), good.substr(0, good.size() - 1), good + "x", "x" + good,
        std::string("firmlane set 1\nLWXSys.lwx\nwls.bin\n"), "firmlane set 1\nother\nwls.bin\nend\n" + row("new"),
        "firmlane set 1\nLWXSys.lwx\n../wls.bin\nend\n" + row("new")}) {
    SCOPED_TRACE(record);
    start();
    directory.write("firmlane.set", record);
    EXPECT_THROW(settle(), Failure);
    {
      FirmwareSet set(*files);
      const FirmwareSet::Fetch broken(set);
    }
    EXPECT_THROW(settle(), Failure);
    fetch();
    EXPECT_EQ(found(), "new");
  }
}

TEST_F(SetOnDisk, TwoProgramsDoNotFetchIntoOneDirectory) {
  start();
  FirmwareSet mine(*files);
  FirmwareSet other(*files);
  {
    FirmwareSet::Fetch fetch(mine);
    store(mine, "wls.bin");
    try {
      const FirmwareSet::Fetch second(other);
      ADD_FAILURE();
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.description(), "Another program is downloading firmware into " + directory.path().string());
    }
    other.settle();
    mine.settle();
    EXPECT_THROW(other.breakUp("wls.bin"), Failure);
    other.saveSystems(kSystems, rowBytes("mine"));
    EXPECT_EQ(directory.read(kSystems), row("old") + row("seen"));
    directory.write("firmlane.set", std::string("as while it takes its place"));
    EXPECT_THAT([&] { other.settle(); },
                testing::ThrowsMessage<Failure>("Another program is just putting firmware into " + directory.path().string()));
    std::filesystem::remove(directory.path() / "firmlane.set");
    EXPECT_EQ(directory.read("wls.bin.new"), "new wls.bin") << "the other one keeps its hands off";
  }
  const std::string changed = row("mine") + row("more");
  other.saveSystems(kSystems, {changed.begin(), changed.end()});
  EXPECT_EQ(directory.read(kSystems), row("old") + row("more")) << "what is on disk, row 0 says";
  EXPECT_NO_THROW(const FirmwareSet::Fetch second(other));
}

TEST_F(SetOnDisk, AFileThatIsReplacedByItselfLeavesNoSetThatCouldBeNamed) {
  start();
  directory.write("VRC2Sys.vrc", row("old"));
  FirmwareSet set(*files);
  set.breakUp("vrc.bin");
  EXPECT_EQ(found(), "old old old old old VRC2Sys.vrc");
  set.breakUp("vrc2.bin");
  EXPECT_EQ(directory.read("VRC2Sys.vrc"), std::string(kSystemRowBytes, '\0'));
  EXPECT_EQ(found(), "old old old old old VRC2Sys.vrc");
  set.breakUp("RFSL.s19");
  EXPECT_EQ(directory.read(kSystems), std::string(kSystemRowBytes, '\0') + row("seen"));
}

TEST_F(SetOnDisk, WithoutASystemFileItIsMade) {
  start();
  std::filesystem::remove(directory.path() / kSystems);
  fetch();
  EXPECT_EQ(directory.read(kSystems), row("new"));
  FirmwareSet set(*files);
  set.saveSystems("VRC2Sys.vrc", {});
  EXPECT_EQ(directory.read("VRC2Sys.vrc"), std::string(kSystemRowBytes, '\0'));
}

}  // namespace
}  // namespace firmlane::test
