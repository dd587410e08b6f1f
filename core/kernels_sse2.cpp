// The loops over blocks of 16 bytes.

#include "core/kernels.h"

#include "core/kernels_character.h"

CC_TARGET_BEGIN(CC_SSE2)
namespace cc::kernels::sse2 {
using Block = Sse2Block;
#include "core/kernels_loops.h"

#include "core/kernels_runs.h"

#include "core/kernels_convert.h"
}  // namespace cc::kernels::sse2
CC_TARGET_END

const cc::kernels::Loops cc::kernels::sse2Loops = cc::kernels::sse2::table;
