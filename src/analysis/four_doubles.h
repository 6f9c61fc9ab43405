#pragma once

// Four doubles at once, for the inner loops of a transform or a filter. Included by files that are
// compiled for one instruction set and by nothing else; no function here may be seen by the linker.

namespace zento {
namespace {

#define ZENTO_INLINE inline __attribute__((always_inline))

using Four = double __attribute__((vector_size(32)));

ZENTO_INLINE void LoadFour(const double* from, Four& to) {
  __builtin_memcpy(&to, from, sizeof to);
}
ZENTO_INLINE void StoreFour(double* to, const Four& from) {
  __builtin_memcpy(to, &from, sizeof from);
}

}  // namespace
}  // namespace zento
