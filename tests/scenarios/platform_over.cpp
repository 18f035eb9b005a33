#include "platform_over.h"

#include "releases.h"

namespace firmlane::test {

Platform platformOver(Ground& ground) {
  return {.queue = ground.queue,
          .screen = ground.screen,
          .mainDriver = ground.mainDriver,
          .versionDriver = ground.versionDriver,
          .http = ground.http,
          .desktop = ground.desktop,
          .files = ground.files,
          .servers = {kServer, "http://registration.example"}};
}

std::string versionsOf(const sim::Unit& unit) {
  std::string text;
  for (const sim::ProcessorState& processor : unit.state().processors) {
    text += (text.empty() ? "" : " ") + std::string(processor.model->name) + "=" + unit.state().versionOf(processor.model->name);
  }
  return text;
}

}  // namespace firmlane::test
