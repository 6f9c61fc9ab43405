#pragma once

// AVX2 needs functions compiled for it and a processor that has it. Elsewhere, and on Windows,
// where the compiler does not align the stack for it (GCC bug 54412), the baseline works alone.
#if defined(__x86_64__) && !defined(_WIN32)
#define ZENTO_AVX2
#endif

namespace zento {

// Of this processor.
inline bool HasAvx2() {
#ifdef ZENTO_AVX2
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has;
#else
  return false;
#endif
}

}  // namespace zento
