// The library's failures as text for people.
#pragma once

#include <string>

#include "tttproc.h"

namespace tools {

// The text of `message` in English; it may have several lines. Where the library's dictionary is
// not installed, the numbers of its messages stand for their texts: the tool that makes the
// dictionary has to work without it.
std::string describe(const TTT& message);

}  // namespace tools
