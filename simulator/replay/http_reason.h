// The words that go with a status of a web server; a record holds the number alone.
#pragma once

#include <algorithm>
#include <array>
#include <string>

namespace firmlane::sim {

inline std::string httpReason(int status) {
  struct Reason {
    int status;
    const char* words;
  };
  constexpr std::array<Reason, 6> kReasons = {{{200, "OK"},
                                               {302, "Found"},
                                               {403, "Forbidden"},
                                               {404, "Not Found"},
                                               {500, "Internal Server Error"},
                                               {503, "Service Unavailable"}}};
  const auto* found =
      std::find_if(kReasons.begin(), kReasons.end(), [status](const Reason& known) { return known.status == status; });
  return found == kReasons.end() ? std::string() : found->words;
}

}  // namespace firmlane::sim
