#include "platform/widgets/display_application.h"

#include <QLoggingCategory>
#include <cstdio>
#include <cstdlib>

#include "platform/widgets/pictures.h"

namespace firmlane {

namespace {

/// Hears Qt while it opens the display: the one message that it would abort after becomes the program's own, and what led to it
/// is of no use to a user.
void sayOnlyThatThereIsNone(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtFatalMsg) {
    std::fputs("There is no display on which the windows can be shown.\n", stderr);
    std::fflush(stderr);
    std::_Exit(EXIT_FAILURE);
  }
  if (!QByteArrayView(context.category).startsWith("qt.qpa.")) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
  }
}

}  // namespace

std::unique_ptr<QApplication> openDisplay(int& argc, char** argv, const std::string& name) {
  // Before the application, as the first window takes it; without a display name, which Qt would add to the title of each form.
  QGuiApplication::setDesktopFileName(QString::fromStdString(name));
  const QtMessageHandler usual = qInstallMessageHandler(&sayOnlyThatThereIsNone);
  auto application = std::make_unique<QApplication>(argc, argv);
  qInstallMessageHandler(usual);
  QApplication::setWindowIcon(programIcon());
  return application;
}

}  // namespace firmlane
