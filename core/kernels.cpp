// The portable loops, and the choice among all of them.

#include "core/kernels.h"

#include "core/init_order.h"
#include "core/kernels_character.h"

namespace cc::kernels {

namespace plain {
using Block = PlainBlock;
#include "core/kernels_loops.h"

#include "core/kernels_runs.h"

#include "core/kernels_convert.h"
}  // namespace plain

const Loops plainLoops = plain::table;

namespace {

// The tables that this processor runs, the portable one first.
struct Choice {
  const Loops* tables[4] = {&plainLoops};
  std::size_t count = 1;

  Choice() {
    if (runsSse2Blocks()) tables[count++] = &sse2Loops;
    if (runsAvx2Blocks()) tables[count++] = &avx2Loops;
    if (runsAvx512Blocks()) tables[count++] = &avx512Loops;
    loops = tables[count - 1];
  }
};

__attribute__((init_priority(InitTables))) const Choice choice;

}  // namespace

constinit const Loops* loops = &plainLoops;

std::span<const Loops* const> supportedLoops() { return {choice.tables, choice.count}; }

}  // namespace cc::kernels
