#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

// Every test binary runs without a display: widgets render offscreen.
int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
