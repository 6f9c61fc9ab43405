#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>

#include "qt/start_up.h"

#ifdef __SANITIZE_ADDRESS__
// The font library keeps the patterns it was asked for until the process ends.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}
#endif

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  zento::ApplyAppearance(application);
  return RUN_ALL_TESTS();
}
