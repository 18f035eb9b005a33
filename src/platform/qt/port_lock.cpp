#include "platform/qt/port_lock.h"

#include <QFileInfo>
#include <QLockFile>

#include "platform/qt/qt_text.h"

#ifdef Q_OS_UNIX
#include <signal.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#endif

namespace firmlane {

#ifdef Q_OS_UNIX

namespace {

// Where Qt looks for a place for its locks.
constexpr const char* kLockDirectories[] = {"/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
                                            "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};

QString lockPath(const QString& device) {
  const QString devices = QStringLiteral("/dev/");
  QString name = device.startsWith(devices) ? device.mid(devices.size()) : device;
  name.replace(QLatin1Char('/'), QLatin1Char('_'));
  for (const char* directory : kLockDirectories) {
    const QString path = QLatin1String(directory) + QStringLiteral("/LCK..") + name;
    if (QFileInfo::exists(path)) {
      return path;
    }
  }
  return {};
}

/// The program that a process runs; of another user's the short name that the system shows to everybody, empty where it shows
/// none.
std::string processName(qint64 process) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink(folder + "/exe", error);
  if (!error) {
    return program.filename();
  }
  std::ifstream file(folder + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

/// A number may meanwhile belong to another program than the one that wrote it down.
bool lives(qint64 process, const std::string& program) {
  if (::kill(static_cast<pid_t>(process), 0) != 0 && errno != EPERM) {
    return false;
  }
  const std::string name = processName(process);
  return name.starts_with(program) || program.starts_with(name);
}

}  // namespace

PortLock portLock(const QString& device) {
  const QString path = lockPath(device);
  qint64 process = 0;
  QString host;
  QString program;
  if (path.isEmpty() || !QLockFile(path).getLockInfo(&process, &host, &program)) {
    return {};
  }
  const std::string name = fromQt(program);
  if (!lives(process, name)) {
    return {.abandoned = true, .owner = {}};
  }
  return {.abandoned = false, .owner = (name.empty() ? "" : name + ", ") + "process " + std::to_string(process)};
}

#else

PortLock portLock(const QString&) { return {}; }  // there the system alone knows who uses a device

#endif

}  // namespace firmlane
