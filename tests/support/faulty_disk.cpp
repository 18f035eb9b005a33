#include "faulty_disk.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/failure.h"
#include "platform/system_path.h"

namespace firmlane::test {

namespace fs = std::filesystem;

class FaultyFile : public DiskFile {
 public:
  FaultyFile(FaultyDisk& disk, std::string path, std::unique_ptr<DiskFile> file, std::shared_ptr<FaultyDisk::Content> content)
      : disk_(disk), path_(std::move(path)), file_(std::move(file)), content_(std::move(content)) {}

  void write(ByteSpan bytes) override {
    disk_.strike(path_);
    file_->write(bytes);
    content_->bytes.insert(content_->bytes.end(), bytes.begin(), bytes.end());
  }
  void sync() override {
    disk_.strike(path_);
    content_->synced = content_->bytes;
  }
  void close() override {
    disk_.strike(path_);
    file_->close();
    if (disk_.full()) {
      fs::resize_file(systemPath(path_), content_->bytes.size() / 2);
      throw Failure(ENOSPC, "No space left on device: " + path_);
    }
  }

 private:
  FaultyDisk& disk_;
  std::string path_;
  std::unique_ptr<DiskFile> file_;
  std::shared_ptr<FaultyDisk::Content> content_;
};

FaultyDisk::FaultyDisk(const std::string& directory) : directory_(systemPath(directory)) { load(); }

void FaultyDisk::plan(Fault fault, int at) {
  fault_ = fault;
  at_ = at;
  operations_ = 0;
  load();
}

void FaultyDisk::load() {
  names_.clear();
  for (const auto& entry : fs::directory_iterator(directory_)) {
    if (entry.is_regular_file()) {
      std::ifstream file(entry.path(), std::ios::binary);
      const Bytes bytes(std::istreambuf_iterator<char>(file), {});
      names_[entry.path().filename().string()] = std::make_shared<Content>(Content{bytes, bytes});
    }
  }
  past_ = {names_};
}

void FaultyDisk::strike(const std::string& path) {
  if (dead_) {
    throw PowerFailed();
  }
  if (operations_++ == at_ && fault_ != Fault::None && fault_ != Fault::FullLater) {
    dead_ = fault_ == Fault::Power;
    if (dead_) {
      throw PowerFailed();
    }
    throw Failure(EIO, "Input/output error: " + path);
  }
}

void FaultyDisk::reboot(std::mt19937& random) {
  const auto upTo = [&random](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
  for (const auto& [name, content] : names_) {
    fs::remove(directory_ / name);
  }
  for (const auto& [name, content] : past_[upTo(past_.size() - 1)]) {
    Bytes left = content->synced;
    if (content->bytes.size() > left.size()) {
      left.assign(content->bytes.begin(),
                  content->bytes.begin() + static_cast<std::ptrdiff_t>(left.size() + upTo(content->bytes.size() - left.size())));
    }
    std::ofstream(directory_ / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(left.data()), static_cast<std::streamsize>(left.size()));
  }
  dead_ = false;
  plan(Fault::None, 0);
}

std::unique_ptr<DiskFile> FaultyDisk::create(const std::string& path) {
  strike(path);
  auto file = real_.create(path);
  const auto content = std::make_shared<Content>();
  names_[fs::path(path).filename().string()] = content;
  note();
  return std::make_unique<FaultyFile>(*this, path, std::move(file), content);
}

void FaultyDisk::rename(const std::string& from, const std::string& to) {
  strike(to);
  real_.rename(from, to);
  names_[fs::path(to).filename().string()] = names_[fs::path(from).filename().string()];
  names_.erase(fs::path(from).filename().string());
  note();
}

void FaultyDisk::remove(const std::string& path) {
  const auto found = names_.find(fs::path(path).filename().string());
  if (dead_ || found == names_.end()) {
    return;  // also where an owner tidies up on the way out of a computer without power
  }
  try {
    strike(path);
  } catch (const PowerFailed&) {
    return;  // an owner may be tidying up in its destructor: the next operation meets the failure
  }
  real_.remove(path);
  names_.erase(found);
  note();
}

void FaultyDisk::syncDirectory(const std::string& path) {
  strike(path);
  past_ = {names_};
}

void FaultyDisk::note() { past_.push_back(names_); }

}  // namespace firmlane::test
