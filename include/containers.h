/// @file
/// Small owning containers of arrays from array `new`.
///
/// Failure style: nothing reports an error; `std::bad_alloc` of an allocation passes through and
/// leaves the container as it was. Counts are elements.
#pragma once

#include <new>
#include <utility>

#include "common_core_api.h"

/// A growing array of plain values: three words, owned storage, no element destruction.
///
/// The capacity reported follows one rule, shared with `Bag`: multiples of 16 up to 256, of 256 up
/// to 4,096, of 4,096 beyond. More room may stand behind it, so that appending one by one costs
/// time linear in the count. `T` must be trivially copyable.
template <class T>
class SimpleVector;

/// A vector that also owns its elements, each an array from array `new` or null.
template <class T>
class ArrayVector;

/// A vector of owned zero-terminated strings; `StringVector<char>` holds UTF-8 texts.
template <class T>
class StringVector;

/// Owns one array from array `new`, or nothing.
template <class T>
class ArrayHolder;

/// The same as `ArrayHolder`, used as a scope guard for temporary buffers.
template <class T>
class BufHolder;
