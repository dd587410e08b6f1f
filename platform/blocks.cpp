// Asks the processor what it can run. `__builtin_cpu_supports` also asks whether the system keeps
// the registers.

#include "platform/blocks.h"

namespace cc::kernels {

#if CC_HAS_VECTORS

bool runsSse2Blocks() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("sse2");
}

bool runsAvx2Blocks() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
         __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
}

#if defined(__x86_64__)
// The processors that have the others, but not the "vbmi" sets, pay for wide registers with their
// clock.
bool runsAvx512Blocks() {
  return runsAvx2Blocks() && __builtin_cpu_supports("avx512bw") &&
         __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
         __builtin_cpu_supports("avx512vbmi2");
}
#else
bool runsAvx512Blocks() { return false; }
#endif

#else

bool runsSse2Blocks() { return false; }
bool runsAvx2Blocks() { return false; }
bool runsAvx512Blocks() { return false; }

#endif

}  // namespace cc::kernels
