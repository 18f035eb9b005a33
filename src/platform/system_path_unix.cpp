#include "platform/system_path.h"

namespace firmlane {

std::filesystem::path systemPath(const std::string& text) { return text; }

}  // namespace firmlane
