// These tests stand on a real Qt application without a display: one screen, as small as they come.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryFile>

int main(int argc, char** argv) {
  QTemporaryFile screens;
  if (!screens.open()) {
    return 1;
  }
  screens.write(R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 1024, "height": 600, "logicalDpi": 96, "dpr": 1}]})");
  screens.close();
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("firmlane-test"));
  return RUN_ALL_TESTS();
}
