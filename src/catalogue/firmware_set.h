// The firmware set on disk is one set: its files, and row 0 of the system version file, which says what set they are. A set that
// is fetched comes aside and takes its place as a whole. Whatever happens in between, a power failure included, the next look
// finds the old set under its old name or the new one under its new name. What a row means is the system version file's business.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/file_lock.h"
#include "platform/files.h"

namespace firmlane {

/// Bytes of a row of the system version file.
inline constexpr std::size_t kSystemRowBytes = 190;

class FirmwareSet {
  /// Holds the lock for as long as it lives, unless another program has it.
  class Hold {
   public:
    explicit Hold(FirmwareSet& set);
    ~Hold() { set_.lock_.reset(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    [[nodiscard]] bool busy() const { return busy_; }

   private:
    FirmwareSet& set_;
    bool busy_;
  };

 public:
  explicit FirmwareSet(const Files& files);

  /// A set on its way. As long as it lives files of the set are stored aside, and no other program fetches one into this
  /// directory. Unless it was complete, the old set then stays as it was.
  class Fetch {
   public:
    /// Throws Failure when another program is fetching one, or the directory cannot be written to.
    explicit Fetch(FirmwareSet& set);
    ~Fetch();
    Fetch(const Fetch&) = delete;
    Fetch& operator=(const Fetch&) = delete;

    /// All that was stored takes its place, and `row` becomes row 0 of this system version file. After a Failure either nothing
    /// of it has happened, or the next look brings it to its end.
    void complete(const std::string& systemsName, ByteSpan row);

   private:
    FirmwareSet& set_;
    Hold hold_;
    bool takingPlace_ = false;
  };

  /// Full path where a file is to be stored now: its own place, or one aside.
  [[nodiscard]] std::string place(const std::string& name);

  /// To be called before a file takes its own place by itself: what it leaves is no set any more that row 0 could name. Does
  /// nothing for other files and while a set is being fetched. Throws Failure.
  void breakUp(const std::string& name);

  /// Brings to its end what a program that was broken off has left, or removes it. To be called before anything is read that a
  /// set consists of. Throws Failure when that is not possible, or when another program is doing so: then there is no set.
  void settle();

  /// Writes a system version file, but for its row 0: that stays, as it says what is on disk. Writes nothing while another
  /// program fetches a set: what it finds afterwards is newer. Throws Failure.
  void saveSystems(const std::string& systemsName, Bytes content);

 private:
  struct Record {
    std::string systemsName;
    Bytes row;
    std::vector<std::string> names;
  };

  [[nodiscard]] bool lock();
  void throwIfBusy(const Hold& hold) const;
  void prepare();
  void settleLocked();
  void finish(const Record& record);
  void discardAside();
  void setRow(const std::string& systemsName, ByteSpan row);
  [[nodiscard]] Bytes systems(const std::string& systemsName) const;
  void write(const Record& record);
  [[nodiscard]] Record readRecord() const;
  [[nodiscard]] bool anythingLeft() const;
  [[nodiscard]] std::string own(const std::string& name) const { return files_.programDirectory() + "/" + name; }
  [[nodiscard]] std::string aside(const std::string& name) const { return own(name) + ".new"; }

  const Files& files_;
  std::string recordPath_;
  std::optional<FileLock> lock_;
  bool fetching_ = false;
  std::vector<std::string> fetched_;
};

}  // namespace firmlane
