// MLDoc: how a document gets its text and loses it.
//
// What is new is complete before what is old goes, since name and data may lie in this document.

#include <cstring>
#include <new>

#include "loc/message_numbers.h"
#include "mlproc.h"

namespace {

constexpr unsigned int maxTextSize = 100'000'000;

// A copy of `n` bytes, or null when memory does not suffice.
char* copyOf(const char* data, unsigned int n) {
  char* const copy = new (std::nothrow) char[n];
  if (copy && n != 0) std::memcpy(copy, data, n);
  return copy;
}

}  // namespace

MLDoc::~MLDoc() { delete[] text; }

void MLDoc::load(const char* newName, const char* data, int size) {
  ChArr nameCopy(newName);
  const unsigned int newSize = static_cast<unsigned int>(size);
  const bool fits = newSize <= maxTextSize;
  char* newText = fits ? copyOf(data, newSize) : nullptr;

  release();
  text = newText;
  textSize = newSize;
  position = 0;
  name.stealFrom(nameCopy);
  if (!newText) {
    UTF8File(true).erro(LocDictionaryCommonCore, fits ? cc::MsgNoMemory : cc::MsgTooLarge,
                        name.get(), 0);
  }
}

void MLDoc::load(const char* path) {
  ChArr nameCopy(path);
  release();
  position = 0;
  name.stealFrom(nameCopy);

  ArrayHolder<char> content;
  textSize = UTF8File::load(name.c_str(), content, maxTextSize, false);
  text = content.steal();
  if (textSize >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) position = 3;
}

void MLDoc::release() {
  delete[] text;
  text = nullptr;
}
