/// @file
/// UTF-8 console output, and the command line as owned UTF-8 strings.
///
/// Failure style: nothing reports an error; what a stream cannot take is lost, and the caller may
/// ask the stream itself. Bytes go to the stream as they stand, in UTF-8. The formatting functions
/// share one buffer without a lock: they must not run on two threads at once.
#pragma once

#include <cstdarg>
#include <cstdio>

#include "common_core_api.h"
#include "containers.h"

/// Writes the zero-terminated text, without a line end. A null or empty text writes nothing.
COMMON_CORE_API void utf8printf_s(FILE* stream, const char* text);

/// Writes the bytes [begin, end) up to the first zero byte among them. A null `begin` writes
/// nothing.
COMMON_CORE_API void utf8printf_s(FILE* stream, const char* begin, const char* end);

/// Writes the text that `format` and `args` make, in the language of `printf`, cut to 32,767 bytes
/// (possibly inside a character). Uses up `args`. The first call of any of the formatting functions
/// allocates the shared buffer, which the library frees at the end of the process; it throws
/// `std::bad_alloc` and writes nothing when there is no memory.
COMMON_CORE_API void utf8printf_va(FILE* stream, const char* format, va_list args)
    COMMON_CORE_PRINTF(2, 0);

/// `utf8printf_va` to the standard output.
COMMON_CORE_API void utf8printf(const char* format, ...) COMMON_CORE_PRINTF(1, 2);

/// `utf8printf_va` to `stream`.
COMMON_CORE_API void utf8printf(FILE* stream, const char* format, ...) COMMON_CORE_PRINTF(2, 3);

/// Fills `args` with copies of the entries of `argv`, the command's name included, up to the null
/// entry that ends them; the count `argc` is not looked at. What `args` held is freed first, so no
/// entry may be one of its elements. Returns the array of `args`, which keeps owning it; null when
/// there is no entry. Throws `std::bad_alloc`; `args` then holds the entries copied so far.
COMMON_CORE_API char** utf8args(int argc, char** argv, StringVector<char>& args);
