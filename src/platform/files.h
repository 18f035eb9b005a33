// The program's own directory: firmware images, lists, system version files. Names in it are found without regard to case, so
// `HUBSL.s19` and `hubSL.s19` are one file, and kept as the program writes them.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/bytes.h"
#include "platform/disk.h"
#include "platform/recorder.h"

namespace firmlane {

class Files {
 public:
  explicit Files(std::filesystem::path programDirectory, Recorder& recorder = noRecorder(),
                 std::shared_ptr<Disk> disk = std::make_shared<RealDisk>())
      : directory_(std::move(programDirectory.make_preferred())), recorder_(recorder), disk_(std::move(disk)) {}

  /// The directory as a text, without a separator behind it unless it is a root; on Windows with the separators that it has
  /// there.
  [[nodiscard]] std::string programDirectory() const;
  /// Full path of a plain name in the program's directory: of the file there whose name differs in case alone, else of the name
  /// as given. Of several such files the one named exactly so is taken, else the first in name order.
  [[nodiscard]] std::string path(const std::string& name) const;
  /// Whether there is nothing of that name, for a full path. A link that leads nowhere, as to a share that is not mounted, is
  /// something. Throws Failure where it cannot be told, as in a directory that may not be searched.
  [[nodiscard]] static bool isMissing(const std::string& path);

  /// Where a link leads, for what is to be replaced there and not here; of anything else the path as it is. Throws Failure for a
  /// link that leads nowhere.
  [[nodiscard]] static std::string behindLink(const std::string& path);

  // All of these take a full path and throw Failure, with a description for the user, when the file is missing, unreadable or not
  // a plain file. The number is kFileNotFound only when isMissing.
  [[nodiscard]] static std::int64_t length(const std::string& path);
  [[nodiscard]] static Bytes read(const std::string& path);
  [[nodiscard]] static std::string readText(const std::string& path);

  /// Puts a whole file in the place of another one, or of none, for a full path; see PartialFile. Throws Failure.
  void replace(const std::string& path, ByteSpan content) const;
  void replaceText(const std::string& path, const std::string& content) const;

  /// What the files are written to.
  [[nodiscard]] Disk& disk() const { return *disk_; }

 private:
  /// How the name stands in the directory, when it does.
  static std::optional<std::string> nameAsStored(const std::filesystem::path& directory, const std::string& name);

  std::filesystem::path directory_;
  Recorder& recorder_;
  std::shared_ptr<Disk> disk_;
};

}  // namespace firmlane
