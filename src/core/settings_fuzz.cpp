#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/settings.h"
#include "core/settings_file.h"
#include "text/status.h"

using namespace zento;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Settings settings;
  if (!ParseSettings(bytes, settings).ok()) return 0;
  Settings again;
  if (!ParseSettings(FormatSettings(settings), again).ok()) std::abort();
  if (!(again == settings)) std::abort();
  return 0;
}
