// StrTag and StrPtrTag: the first entry whose name or value matches.

#include "strtag.h"

#include "charproc.h"
#include "chpair.h"

namespace {

const char* nameOf(const StrTag& entry) { return entry.name; }
const char* nameOf(const StrPtrTag& entry) { return *entry.name; }

template <class Entry>
int valueOf(const Entry* entry, const ChPair& wanted) {
  for (; entry->name; ++entry) {
    const ChPair name(nameOf(*entry));
    if (streq_i_ascii(name.begin, name.length(), wanted.begin, wanted.length())) {
      return entry->value;
    }
  }
  return -1;
}

template <class Entry>
const char* nameOfValue(const Entry* entry, int wanted) {
  for (; entry->name; ++entry) {
    if (entry->value == wanted) return nameOf(*entry);
  }
  return nullptr;
}

}  // namespace

int StrTag::translate(const char* text) const { return valueOf(this, ChPair(text)); }

const char* StrTag::translate(int wanted) const { return nameOfValue(this, wanted); }

int StrPtrTag::translate(const char* text) const { return valueOf(this, ChPair(text)); }

const char* StrPtrTag::translate(int wanted) const { return nameOfValue(this, wanted); }
