/// @file
/// Fewer cases of the long sweeps, for programs in which each case is slow.
#pragma once

namespace cc::test {

/// Of a long sweep, every how manieth case is run: all of them, or in builds that check memory so
/// few as a prime leaves, so that what has a period of its own is met in every phase.
constexpr int stride = CC_TEST_STRIDE;

}  // namespace cc::test
