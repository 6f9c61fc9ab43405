#include "cli/cli.h"

#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>

#include "host/native/windows_text.h"
#endif

int main(int argc, char** argv) {
#ifdef _WIN32
  // The arguments in main are in the system's code page.
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &argc);
  std::vector<std::string> arguments;
  for (int i = 0; i < argc; ++i) arguments.push_back(zento::Utf8FromWide(wide[i]));
  LocalFree(wide);
  static_cast<void>(argv);
  return zento::RunCli(arguments);
#else
  return zento::RunCli({argv, argv + argc});
#endif
}
