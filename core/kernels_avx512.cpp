// The loops over blocks of 64 bytes.

#include "core/kernels.h"

#include "core/kernels_character.h"
#include "core/kernels_shuffle_tables.h"

CC_TARGET_BEGIN(CC_AVX512)
namespace cc::kernels::avx512 {
using Block = Avx512Block;
#include "core/kernels_loops.h"

#include CC_AVX512_CONVERSIONS

#include "core/kernels_convert.h"
}  // namespace cc::kernels::avx512
CC_TARGET_END

const cc::kernels::Loops cc::kernels::avx512Loops = cc::kernels::avx512::table;
