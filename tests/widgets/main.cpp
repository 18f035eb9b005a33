// These tests stand on a real Qt application without a display: one screen, as small as they come.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryFile>
#include <algorithm>

int main(int argc, char** argv) {
  QTemporaryFile screens;
  if (!screens.open()) {
    return 1;
  }
  const int factor = std::max(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));
  screens.write(QStringLiteral(R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": %1, "height": %2, "dpr": 1}]})")
                    .arg(1024 * factor)
                    .arg(600 * factor)
                    .toLatin1());
  screens.close();
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("firmlane-test"));
  return RUN_ALL_TESTS();
}
