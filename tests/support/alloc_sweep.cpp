// Each block stands behind a small header that names its form and size. The state of the sweep is
// the thread's own, so that threads of the program go on undisturbed.

#include "tests/support/alloc_sweep.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

enum class Form : std::uint32_t { Plain = 0x706C6E21, Array = 0x61727221, Freed = 0x66726521 };

struct alignas(16) BlockHeader {
  std::size_t size;
  Form form;
};

// More than any test needs. Asked for more, a sanitizer's `malloc` ends the program.
constexpr std::size_t kMost = PTRDIFF_MAX >> (sizeof(std::size_t) == 8 ? 24 : 1);

struct Faults {
  bool armed = false;
  bool persistent = false;
  bool fired = false;
  std::size_t countdown = 0;
  std::size_t blocks = 0;
  std::size_t bytes = 0;
};

thread_local Faults faults;
std::atomic<std::size_t> live{0};

/// Sums of all sweeps of the program.
std::size_t runs = 0;
std::size_t failures = 0;

bool failsNow() {
  if (!faults.armed) return false;
  if (faults.fired && !faults.persistent) return false;
  if (faults.countdown > 0) {
    --faults.countdown;
    return false;
  }
  faults.fired = true;
  ++failures;
  return true;
}

// Fresh and freed memory holds neither zeros nor the old text by luck.
void scribble(void* block, std::size_t size) {
  constexpr std::size_t kLongest = 1 << 16;
  std::memset(block, 0xCD, size < kLongest ? size : kLongest);
  std::atomic_signal_fence(std::memory_order_seq_cst);  // nor is it left out before a free
}

void* allocate(std::size_t size, Form form) {
  if (failsNow() || size > kMost) return nullptr;
  void* memory = std::malloc(sizeof(BlockHeader) + size);
  if (!memory) return nullptr;
  auto* header = new (memory) BlockHeader{size, form};
  ++faults.blocks;
  faults.bytes += size;
  ++live;
  scribble(header + 1, size);
  return header + 1;
}

void* allocateOrThrow(std::size_t size, Form form) {
  void* block = allocate(size, form);
  if (!block) throw std::bad_alloc();
  return block;
}

/// Says at the end of the program how much failed.
class Summary : public testing::Environment {
  void TearDown() override {
    if (runs != 0) std::printf("[  FAULTS  ] %zu runs, %zu failing allocations\n", runs, failures);
  }
};

const testing::Environment* const summary = testing::AddGlobalTestEnvironment(new Summary);

void release(void* block, Form form) {
  if (!block) return;
  auto* header = static_cast<BlockHeader*>(block) - 1;
  if (header->form != form) {
    const bool isBlock = header->form == Form::Plain || header->form == Form::Array;
    std::fputs(!isBlock              ? "a block is freed twice, or is none\n"
               : form == Form::Array ? "delete[] of what came from new\n"
                                     : "delete of what came from new[]\n",
               stderr);
    std::abort();
  }
  scribble(block, header->size);
  header->form = Form::Freed;
  --live;
  std::free(header);
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size, Form::Plain); }
void* operator new[](std::size_t size) { return allocateOrThrow(size, Form::Array); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, Form::Plain);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, Form::Array);
}
void operator delete(void* block) noexcept { release(block, Form::Plain); }
void operator delete[](void* block) noexcept { release(block, Form::Array); }
void operator delete(void* block, std::size_t) noexcept { release(block, Form::Plain); }
void operator delete[](void* block, std::size_t) noexcept { release(block, Form::Array); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block, Form::Plain); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block, Form::Array); }

namespace cc::test {

AllocCount::AllocCount() : blocksBefore(faults.blocks), bytesBefore(faults.bytes) {}
std::size_t AllocCount::blocks() const { return faults.blocks - blocksBefore; }
std::size_t AllocCount::bytes() const { return faults.bytes - bytesBefore; }

std::size_t liveBlocks() { return live; }

AllocSweep::AllocSweep(std::size_t index, bool persistent) {
  faults.armed = false;
  faults.persistent = persistent;
  faults.fired = false;
  faults.countdown = index;
}

bool AllocSweep::hasFailed() const { return faults.fired; }

AllocSweep::Armed::Armed(AllocSweep&) { faults.armed = true; }
AllocSweep::Armed::~Armed() { faults.armed = false; }

void sweepAllocations(const std::function<void(AllocSweep&)>& scenario) {
  constexpr std::size_t kMostRuns = 100'000;
  for (const bool persistent : {false, true}) {
    for (std::size_t index = 0;; ++index) {
      ASSERT_LT(index, kMostRuns) << "the scenario never gets by with the allocations it is given";
      const std::string title = "allocation " + std::to_string(index) +
                                (persistent ? " and all after it fail" : " fails");
      const testing::ScopedTrace trace(__FILE__, __LINE__, title);
      const std::size_t before = liveBlocks();
      AllocSweep sweep(index, persistent);
      scenario(sweep);
      if (sweep.hasFailed()) ++runs;
      if (!testing::Test::HasFailure()) {  // whose message would be a live block too
        EXPECT_EQ(before, liveBlocks()) << "a block is lost";
      }
      if (!sweep.hasFailed() || testing::Test::HasFatalFailure()) break;
    }
  }
}

}  // namespace cc::test
