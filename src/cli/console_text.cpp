#include "cli/console_text.h"

#include <cstdio>

#include "cli/exit_status.h"
#include "text/status.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#endif

namespace zento {

void PrepareConsole() {
#ifdef _WIN32
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stdin), _O_BINARY);
#endif
}

void WriteOut(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void WriteError(std::string_view line) {
  // What was printed before comes first where both go to the same place.
  std::fflush(stdout);
  const std::string whole = "zento-cli: " + std::string(line) + "\n";
  std::fwrite(whole.data(), 1, whole.size(), stderr);
  std::fflush(stderr);
}

Status FlushOut() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return Status::Ok();
  return Status::Failure("standard output could not be written");
}

Result<std::string> ReadStandardInput() {
  std::string bytes;
  char block[1 << 16];
  while (const std::size_t got = std::fread(block, 1, sizeof block, stdin))
    bytes.append(block, got);
  if (std::ferror(stdin) != 0) return Status::Failure("standard input could not be read");
  return bytes;
}

int FailWith(const Status& status) {
  WriteError(status.why());
  return kExitFailure;
}

}  // namespace zento
