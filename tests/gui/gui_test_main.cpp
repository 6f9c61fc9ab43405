#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>

#include "qt/appearance.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  zento::ApplyAppearance(application);
  return RUN_ALL_TESTS();
}
