// Stands in for the analog I/O board's library, which a 64-bit program must refuse.

#include <cstdint>

extern "C" std::int32_t AioClose(std::int32_t) {
  return 0;
}
