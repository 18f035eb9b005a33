// A program of ours as its users have it: a process with lines in and JSON lines out.
#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <string>

namespace firmlane::test {

class Process {
 public:
  /// Starts a program from the directory of the built programs. Its end of the pipe closes with this.
  Process(const QString& program, const QStringList& arguments);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void write(const QString& line);
  /// The next line that is not an event; events are noted. Empty when none comes in time.
  QJsonObject answer(int milliseconds = 20000);
  /// Sends a command and gives its answer.
  QJsonObject ask(const QString& line) {
    write(line);
    return answer();
  }
  /// As ask; the test fails here unless the answer is ok.
  QJsonValue must(const QString& line);
  /// The next line of any kind.
  QJsonObject line(int milliseconds = 20000);
  /// Ends it at once, as a power failure would.
  void kill();
  /// Waits for the end; the exit status.
  int finish();
  [[nodiscard]] const QStringList& events() const { return events_; }
  [[nodiscard]] qint64 pid() const { return process_.processId(); }

 private:
  QProcess process_;
  QStringList events_;
};

/// Finds the unit's port by "Auto-Find Port" of the port window that is about to come up. Asks again when the unit was not heard:
/// on a busy machine it can answer later than a fast clock waits.
void findPort(Process& console);

}  // namespace firmlane::test
