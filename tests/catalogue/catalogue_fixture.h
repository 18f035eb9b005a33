// The catalogue's operations over the ground of all logic tests.
#pragma once

#include <gmock/gmock.h>

#include "catalogue/registration.h"
#include "catalogue/web_jobs.h"
#include "world.h"

namespace firmlane::test {

inline constexpr const char* kMaker = "http://maker.example";
inline constexpr const char* kRegistrar = "http://registrar.example";

class CatalogueTest : public testing::Test, protected World {
 protected:
  CatalogueTest() { screen.answerOthers(); }

  [[nodiscard]] static std::string maker(const std::string& path) { return kMaker + path; }
  void product(const std::string& code, bool older = false) {
    state.ProductCode = code;
    state.OldVelarc = older;
  }
  /// The texts of the boxes shown since the last time, critical ones marked by "!".
  std::vector<std::string> boxes() {
    std::vector<std::string> texts;
    for (; boxesTold_ < screen.boxes().size(); ++boxesTold_) {
      const MessageBox& box = screen.boxes()[boxesTold_];
      texts.push_back((box.icon == MessageIcon::Critical ? "!" : "") + box.text);
    }
    return texts;
  }
  [[nodiscard]] std::string status() const { return form1.lblStatus.Caption; }
  [[nodiscard]] std::string top() const { return form1.lblTop.Caption; }
  /// "caution: " and the words of a window's outcome; empty while there is none.
  template <typename Window>
  [[nodiscard]] static std::string outcome(const Window& window) {
    return window.lblOutcome.Visible ? window.lblOutcome.Kind.get() + ": " + window.lblOutcome.Caption.get() : "";
  }
  [[nodiscard]] std::string info() const { return form1.lblProgressInfo.Caption; }

  ListFetch lists{host, http, files, wizard, activity, state, form1, kMaker};
  FirmwareSet set{files};
  Download download{host, http, files, set, lists, supervision, wizard, state, form1, kMaker};
  WebJobs jobs{host, desktop, download, state, kMaker};
  Registration registration{host, http, download, supervision, state, form1, kRegistrar};

 private:
  std::size_t boxesTold_ = 0;
};

}  // namespace firmlane::test
