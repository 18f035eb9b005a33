// These tests stand on a real Qt application without a display: one screen, as small as they come.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QTemporaryDir>
#include <algorithm>

int main(int argc, char** argv) {
  // Named without a drive, whose colon Qt would take for the end of the name.
  const QTemporaryDir folder(QStringLiteral("screens-XXXXXX"));
  QFile screens(QDir::current().relativeFilePath(folder.filePath(QStringLiteral("screens.json"))));
  if (!screens.open(QIODevice::WriteOnly)) {
    return 1;
  }
  const int factor = std::max(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));
  screens.write(QStringLiteral(R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": %1, "height": %2, "dpr": 1}]})")
                    .arg(1024 * factor)
                    .arg(600 * factor)
                    .toLatin1());
  screens.close();
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
#ifdef Q_OS_WIN
  // Without a display Qt looks for fonts in a folder of its own, and draws each letter as a box as wide as it is high.
  if (qEnvironmentVariableIsEmpty("QT_QPA_FONTDIR")) {
    qputenv("QT_QPA_FONTDIR", qgetenv("SystemRoot") + "\\Fonts");
  }
#endif
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  if (const QString usual = QStringLiteral("DejaVu Sans"); QFontDatabase::families().contains(usual)) {
    QApplication::setFont(QFont(usual));  // a system may have no better idea than its oddest
  }
  QApplication::setApplicationName(QStringLiteral("firmlane-test"));
  return RUN_ALL_TESTS();
}
