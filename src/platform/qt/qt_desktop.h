// The user's desktop through Qt.
#pragma once

#include <QUrl>
#include <functional>

#include "platform/desktop.h"

namespace firmlane {

class QtDesktop : public Desktop {
 public:
  /// `open` hands a URL to the user's default application, such as QDesktopServices::openUrl; false when nothing takes it.
  explicit QtDesktop(std::function<bool(const QUrl&)> open) : open_(std::move(open)) {}

  void openDocument(const std::string& document) override;
  void runProgram(const std::string& path) override;

  /// Makes the file at this path executable where the platform needs that. Throws Failure when it is missing or cannot be made
  /// so. For desktops that start nothing but fail as this one does.
  static void makeStartable(const std::string& path);

 private:
  std::function<bool(const QUrl&)> open_;
};

}  // namespace firmlane
