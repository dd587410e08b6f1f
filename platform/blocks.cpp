// Asks what the processor can run and the system keeps the registers of.

#include "platform/blocks.h"

#if CC_HAS_VECTORS
#if __has_include(<sys/platform/x86.h>) && !defined(__clang__)  // which the header is no C++ for
// The C library asked at its own start. To ask again takes a virtual machine microseconds for each
// word of the answer.
#include <sys/platform/x86.h>
#define CC_RUNS(name, builtinName) CPU_FEATURE_ACTIVE(name)
#else
#define CC_RUNS(name, builtinName) (__builtin_cpu_init(), __builtin_cpu_supports(builtinName) != 0)
#endif
#endif

namespace cc::kernels {

#if CC_HAS_VECTORS

bool runsSse2Blocks() { return CC_RUNS(SSE2, "sse2"); }

bool runsAvx2Blocks() {
  return CC_RUNS(AVX2, "avx2") && CC_RUNS(BMI1, "bmi") && CC_RUNS(BMI2, "bmi2") &&
         CC_RUNS(POPCNT, "popcnt");
}

#if defined(__x86_64__)
// The processors that have the others, but not the "vbmi" sets, pay for wide registers with their
// clock.
bool runsAvx512Blocks() {
  return runsAvx2Blocks() && CC_RUNS(AVX512BW, "avx512bw") && CC_RUNS(AVX512VL, "avx512vl") &&
         CC_RUNS(AVX512DQ, "avx512dq") && CC_RUNS(AVX512_VBMI2, "avx512vbmi2");
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
