/// @file
/// The export mark of the library.
///
/// Everything that a client may use carries COMMON_CORE_API; whatever does not is invisible
/// outside the shared library.
#pragma once

/// Marks a class, function or variable as part of the library's binary interface.
#define COMMON_CORE_API __attribute__((visibility("default")))

/// Marks a member of such a class that only the library itself calls.
#define COMMON_CORE_HIDDEN __attribute__((visibility("hidden")))

/// Marks a function that formats like `printf`: `fmt` is the position of the format argument and
/// `first` that of the first value, both counted from 1 (members count `this`).
#define COMMON_CORE_PRINTF(fmt, first) __attribute__((format(printf, fmt, first)))
