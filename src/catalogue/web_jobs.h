// What the program asks of the web and the desktop beside its downloads: documents in the user's browser, and the installer of
// the remote-control software.
#pragma once

#include <string>

#include "catalogue/download.h"
#include "platform/desktop.h"

namespace firmlane {

class WebJobs {
 public:
  /// `server` is scheme and host of the maker's web server.
  WebJobs(FormHost& host, Desktop& desktop, const Download& download, RunState& state, std::string server);

  /// Opens a path or URL with the user's default application and returns at once. Throws Failure when nothing opens it.
  void StartDoc(const std::string& document);
  /// Opens a path of the maker's web site. Tells a failure itself.
  void openPage(const std::string& path);
  /// Opens the release notes that belong to the product and the page of the classic wizard. Tells a failure itself.
  void LaunchRelNote();

  /// Starts the installer that was downloaded last and ends the program (ProgramEnded). When it cannot be started, that is told
  /// and the program goes on.
  void InstallSoftware();

 private:
  void fail(const char* context, const Failure& failure);

  FormHost& host_;
  Desktop& desktop_;
  const Download& download_;
  RunState& state_;
  std::string server_;
};

}  // namespace firmlane
