// The measured rows as a table: on the terminal, as Markdown, in the README, and as plain figures
// that a run of another word size hands over.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "harness.h"

namespace bench {

// Best times in nanoseconds by "operation, input", as another run saved them.
using Figures = std::map<std::string, double>;

bool saveFigures(const std::string& path, const std::vector<Row>& rows);
bool loadFigures(const std::string& path, Figures& figures);

// The table in Markdown, aligned so that it can be read on a terminal as well. `other` are the
// figures of the 32-bit build; a dash stands where there are none.
std::string table(const std::vector<Row>& rows, const Figures& other);

// One line on when, where and how the figures were taken.
std::string caption(bool quick, bool hasOther);

// Rows that miss a bar, one a line.
std::string misses(const std::vector<Row>& rows);

// Puts `text` between the markers of the file at `path`. False when it cannot, or has no markers.
bool putBetweenMarkers(const std::string& path, const std::string& text);

}  // namespace bench
