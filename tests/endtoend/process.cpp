#include "process.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QJsonDocument>

namespace firmlane::test {

Process::Process(const QString& program, const QStringList& arguments) {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(QStringLiteral(PROGRAMS "/") + program, arguments);
  EXPECT_TRUE(process_.waitForStarted()) << program.toStdString();
}

Process::~Process() {
  process_.closeWriteChannel();
  if (!process_.waitForFinished(3000)) {
    process_.kill();
    process_.waitForFinished();
  }
}

void Process::write(const QString& line) {
  process_.write(line.toUtf8() + '\n');
  process_.waitForBytesWritten();
}

QJsonObject Process::line(int milliseconds) {
  QElapsedTimer clock;
  clock.start();
  while (!process_.canReadLine()) {
    const int left = milliseconds - static_cast<int>(clock.elapsed());
    if (left <= 0 || !process_.waitForReadyRead(left)) {
      return {};
    }
  }
  return QJsonDocument::fromJson(process_.readLine()).object();
}

QJsonObject Process::answer(int milliseconds) {
  for (;;) {
    const QJsonObject next = line(milliseconds);
    if (!next.contains("event")) {
      return next;
    }
    events_ << QString::fromUtf8(QJsonDocument(next).toJson(QJsonDocument::Compact));
  }
}

QJsonValue Process::must(const QString& line) {
  const QJsonObject result = ask(line);
  EXPECT_TRUE(result["ok"].toBool()) << line.toStdString() << " -> "
                                     << QJsonDocument(result).toJson(QJsonDocument::Compact).toStdString();
  return result["value"];
}

void Process::kill() {
  process_.kill();
  process_.waitForFinished();
}

int Process::finish() {
  process_.closeWriteChannel();
  EXPECT_TRUE(process_.waitForFinished(20000));
  return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

void findPort(Process& console) {
  constexpr int kTries = 10;
  console.must("wait form frmPort 5");
  for (int i = 0; i < kTries; ++i) {
    console.must("click frmPort.Command2");
    console.must("wait messagebox 60");
    const bool found = console.events().last().contains("COM3 found, now Connecting");
    console.must("answer OK");
    if (found) {
      return;
    }
  }
  ADD_FAILURE() << console.events().last().toStdString();
}

}  // namespace firmlane::test
