#include "platform/files.h"

#include "platform/partial_file.h"
#include "platform/system_path.h"

namespace firmlane {

std::string Files::programDirectory() const { return directory_.string(); }

std::string Files::path(const std::string& name) const {
  const std::string stored = nameAsStored(directory_, name).value_or(name);
  std::string path = (directory_ / systemPath(stored)).string();
  recorder_.fileMet(path);
  return path;
}

std::string Files::readText(const std::string& path) {
  const Bytes content = read(path);
  return {content.begin(), content.end()};
}

void Files::replace(const std::string& path, ByteSpan content) const {
  PartialFile file(*disk_, path);
  file.write(content);
  file.complete();
}

void Files::replaceText(const std::string& path, const std::string& content) const {
  replace(path, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
}

}  // namespace firmlane
