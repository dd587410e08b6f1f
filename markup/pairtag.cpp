// PairTag: the first entry whose name or value matches.
//
// Every access to the cache is atomic, so that threads may prepare one table at once: all of them
// store the same ends. The first entry's end is stored last: whoever sees it, sees all.

#include "pairtag.h"

#include <atomic>

#include "charproc.h"

namespace {

using CachedEnd = std::atomic_ref<const char*>;
static_assert(CachedEnd::required_alignment == alignof(const char*));

}  // namespace

void PairTag::init() const {
  if (!name || CachedEnd(nameEnd).load(std::memory_order_acquire)) return;
  for (const PairTag* entry = this + 1; entry->name; ++entry) {
    CachedEnd(entry->nameEnd)
        .store(entry->name + std::strlen(entry->name), std::memory_order_relaxed);
  }
  CachedEnd(nameEnd).store(name + std::strlen(name), std::memory_order_release);
}

int PairTag::translate(const ChPair& text) const {
  init();
  for (const PairTag* entry = this; entry->name; ++entry) {
    const char* const end = CachedEnd(entry->nameEnd).load(std::memory_order_relaxed);
    const unsigned int length = ChPair(entry->name, end).length();
    if (streq_i_ascii(entry->name, length, text.begin, text.length())) return entry->value;
  }
  return -1;
}

int PairTag::translate(const char* text) const {
  const ChPair wanted(text);
  for (const PairTag* entry = this; entry->name; ++entry) {
    const unsigned int length = ChPair(entry->name).length();
    if (streq_i_ascii(entry->name, length, wanted.begin, wanted.length())) return entry->value;
  }
  return -1;
}

const char* PairTag::translate(int wanted) const {
  for (const PairTag* entry = this; entry->name; ++entry) {
    if (entry->value == wanted) return entry->name;
  }
  return nullptr;
}
