// A real disk that is not waited for: tests write thousands of files, and lose none to a power failure.
#pragma once

#include "platform/disk.h"

namespace firmlane::test {

class QuickDisk : public RealDisk {
 public:
  std::unique_ptr<DiskFile> create(const std::string& path) override {
    return std::make_unique<QuickFile>(RealDisk::create(path));
  }
  void syncDirectory(const std::string& /*path*/) override {}

 private:
  class QuickFile : public DiskFile {
   public:
    explicit QuickFile(std::unique_ptr<DiskFile> file) : file_(std::move(file)) {}
    void write(ByteSpan bytes) override { file_->write(bytes); }
    void sync() override {}
    void close() override { file_->close(); }

   private:
    std::unique_ptr<DiskFile> file_;
  };
};

}  // namespace firmlane::test
