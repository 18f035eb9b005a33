// firmlane-console: the program without a window, for scripts. See docs/console.md.
#include <QCoreApplication>
#include <QDir>
#include <csignal>
#include <iostream>

#include "app/console_app.h"
#include "platform/qt/identity.h"
#include "platform/qt/program_directory.h"
#include "platform/qt/standard_input.h"

int main(int argc, char** argv) {
  firmlane::holdStandardStreams();
  const QCoreApplication application(argc, argv);
  firmlane::introduce("firmlane");
  std::string error;
  const auto options = firmlane::readConsoleOptions(QCoreApplication::arguments(), error);
  if (!options) {
    std::cerr << error << std::endl;
    return 2;
  }
  if (!options->text.empty()) {
    std::cout << options->text;
    return 0;
  }
  std::string directory = options->directory;
  if (directory.empty()) {
    directory = firmlane::programDirectory().string();
  } else {
    directory = QDir(QString::fromStdString(directory)).absolutePath().toStdString();
    QDir::setCurrent(QString::fromStdString(directory));
  }
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);  // an output that nobody reads ends the program in order
#endif
  try {
    const std::string failure = firmlane::ConsoleApp(*options, directory).run();
    if (!failure.empty()) {
      std::cerr << failure << std::endl;
      return 1;
    }
    return 0;
  } catch (const firmlane::Failure& failure) {  // the record's file cannot be written
    std::cerr << "firmlane-console: " << failure.description() << std::endl;
    return 2;
  }
}
