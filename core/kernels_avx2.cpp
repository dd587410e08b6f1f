// The loops over blocks of 32 bytes.

#include "core/kernels.h"

#include "core/kernels_character.h"
#include "core/kernels_shuffle_tables.h"

CC_TARGET_BEGIN(CC_AVX2)
namespace cc::kernels::avx2 {
using Block = Avx2Block;
#include "core/kernels_loops.h"

#include CC_AVX2_CONVERSIONS

#include "core/kernels_convert.h"
}  // namespace cc::kernels::avx2
CC_TARGET_END

const cc::kernels::Loops cc::kernels::avx2Loops = cc::kernels::avx2::table;
