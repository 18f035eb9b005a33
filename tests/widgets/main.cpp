// These tests stand on a real Qt application without a display.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("firmlane-test"));
  return RUN_ALL_TESTS();
}
