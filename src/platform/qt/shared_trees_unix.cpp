#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/qt/shared_trees.h"

namespace firmlane {

namespace {
constexpr std::string_view kInsideABundle = ".app/Contents/";  // of macOS, which a file of ours would unseal
constexpr std::string_view kSharedTrees[] = {"/bin", "/sbin", "/usr", "/snap"};
}  // namespace

bool isShared(const std::filesystem::path& directory) {
  const std::string text = directory.string();
  if (text.find(kInsideABundle) != std::string::npos) {
    return true;
  }
  return std::any_of(std::begin(kSharedTrees), std::end(kSharedTrees),
                     [&text](std::string_view tree) { return text == tree || text.starts_with(std::string(tree) + "/"); });
}

}  // namespace firmlane
