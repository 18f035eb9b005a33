// A disk that fails, fills up or loses power at a chosen operation, over a real directory. What a power failure leaves is what a
// real disk may leave: names come back in the order in which they were given, as far as they got; of a file that was not synced
// any beginning is left.
#pragma once

#include <filesystem>
#include <map>
#include <random>

#include "platform/disk.h"

namespace firmlane::test {

/// Thrown where the power fails. Nothing that is done afterwards reaches the disk.
struct PowerFailed {};

class FaultyDisk : public Disk {
 public:
  enum class Fault {
    None,
    Error,      // the operation fails; those behind it succeed
    FullLater,  // from the operation on, what is written is taken and is found not to fit when the file is closed
    Power,
  };

  explicit FaultyDisk(const std::string& directory);

  /// The fault strikes at the operation of this number from now, counted from 0.
  void plan(Fault fault, int at);
  /// Operations since the last plan.
  [[nodiscard]] int operations() const { return operations_; }
  [[nodiscard]] bool withoutPower() const { return dead_; }
  /// Power is back: the directory holds what may be left. Ends the fault.
  void reboot(std::mt19937& random);

  std::unique_ptr<DiskFile> create(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
  void remove(const std::string& path) override;
  void syncDirectory(const std::string& path) override;

 private:
  friend class FaultyFile;
  struct Content {
    Bytes bytes;
    Bytes synced;
  };
  using Names = std::map<std::string, std::shared_ptr<Content>>;

  void strike(const std::string& path);
  [[nodiscard]] bool full() const { return fault_ == Fault::FullLater && operations_ > at_; }
  void note();
  void load();

  RealDisk real_;
  std::filesystem::path directory_;
  Fault fault_ = Fault::None;
  int at_ = 0;
  int operations_ = 0;
  bool dead_ = false;
  Names names_;
  std::vector<Names> past_;  // since names were last synced, the first one being what was synced
};

}  // namespace firmlane::test
