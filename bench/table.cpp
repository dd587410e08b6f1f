// Cells are made as strings first, columns are widened to their longest cell afterwards.

#include "table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>

namespace bench {
namespace {

const char openingMarker[] = "<!-- bench -->";
const char closingMarker[] = "<!-- /bench -->";

std::string key(const Row& row) { return row.operation + ", " + row.input; }

std::string formatted(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

// Three significant digits.
std::string significant(double value) {
  if (value >= 99.95) return formatted("%.0f", value);
  if (value >= 9.995) return formatted("%.1f", value);
  return formatted("%.2f", value);
}

std::string speed(const Work& work, double nanoseconds) {
  if (nanoseconds <= 0) return "–";
  if (work.inBytes && work.amount >= 1024) {
    const double rate = work.amount / nanoseconds;  // bytes per nanosecond are GB per second
    return rate >= 1 ? significant(rate) + " GB/s" : significant(rate * 1e3) + " MB/s";
  }
  const double time = work.inBytes ? nanoseconds : nanoseconds / work.amount;
  if (time < 1e3) return significant(time) + " ns";
  if (time < 1e6) return significant(time / 1e3) + " µs";
  return significant(time / 1e6) + " ms";
}

std::string nameAnd(const Contestant* contestant, const Work& work) {
  if (!contestant || contestant->statistics.best <= 0) return "–";
  return contestant->name + ", " + speed(work, contestant->statistics.best);
}

std::string target(const Row& row) {
  std::string text;
  for (const Bar& bar : row.bars) {
    if (!text.empty()) text += "; ";
    text += formatted("%.3g", bar.factor) + " ×";
    text += bar.against.empty() ? " best" : " " + bar.against;
  }
  return text.empty() ? "–" : text;
}

// What the table shows decides: a ratio that rounds to the bar has reached it.
bool reaches(double ratio, double factor) {
  return std::round(ratio * 100) >= std::round(factor * 100);
}

std::string verdict(const Row& row) {
  std::string text;
  bool all = true;
  for (const Bar& bar : row.bars) {
    const double ratio = row.reached(bar);
    if (ratio <= 0) continue;
    if (!text.empty()) text += "; ";
    text += significant(ratio);
    all = all && reaches(ratio, bar.factor);
  }
  if (text.empty()) return "–";
  return (all ? "reached: " : "**below**: ") + text;
}

// Characters, for columns that line up.
std::size_t width(const std::string& cell) {
  return static_cast<std::size_t>(
      std::count_if(cell.begin(), cell.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    text += "| " + cells[i] + std::string(widths[i] - width(cells[i]) + 1, ' ');
  }
  return text + "|\n";
}

std::vector<std::string> cellsOf(const Row& row, const Figures& other) {
  const auto found = other.find(key(row));
  const double otherTime = found == other.end() ? 0 : found->second;
  const double ratio = row.reached({1, ""});
  return {row.operation,
          row.input,
          speed(row.work, row.ours() ? row.ours()->statistics.best : 0),
          row.ours() ? formatted("%.0f %%", 100 * row.ours()->statistics.spread) : "–",
          nameAnd(row.bestPeer(), row.work),
          ratio > 0 ? significant(ratio) : "–",
          nameAnd(row.limit(), row.work),
          speed(row.work, otherTime),
          target(row),
          verdict(row)};
}

std::string processor() {
  std::ifstream info("/proc/cpuinfo");
  std::string text, name = "unknown processor", family, flags;
  int count = 0;
  while (std::getline(info, text)) {
    const std::size_t colon = text.find(": ");
    if (colon == std::string::npos) continue;
    const std::string value = text.substr(colon + 2);
    if (text.rfind("processor", 0) == 0) ++count;
    if (text.rfind("model name", 0) == 0) name = value;
    if (text.rfind("cpu family", 0) == 0) family = value;
    if (text.rfind("flags", 0) == 0) flags = " " + value + " ";
  }
  std::string vectors;
  for (const char* flag : {"avx2", "avx512bw"}) {
    if (flags.find(std::string(" ") + flag + " ") != std::string::npos) {
      vectors += std::string(", ") + flag;
    }
  }
  return name + " (family " + family + vectors + "; " + std::to_string(count) + " cores)";
}

}  // namespace

bool saveFigures(const std::string& path, const std::vector<Row>& rows) {
  std::ofstream file(path);
  for (const Row& row : rows) {
    if (row.ours()) file << key(row) << '\t' << row.ours()->statistics.best << '\n';
  }
  return static_cast<bool>(file.flush());
}

bool loadFigures(const std::string& path, Figures& figures) {
  std::ifstream file(path);
  if (!file) return false;
  std::string text;
  while (std::getline(file, text)) {
    const std::size_t tab = text.find('\t');
    if (tab != std::string::npos) figures[text.substr(0, tab)] = std::stod(text.substr(tab + 1));
  }
  return true;
}

std::string table(const std::vector<Row>& rows, const Figures& other) {
  std::vector<std::vector<std::string>> lines = {{"operation", "input", "ours", "spread",
                                                  "best peer", "ratio", "limit", "32 bits",
                                                  "target", "verdict"}};
  for (const Row& row : rows) lines.push_back(cellsOf(row, other));
  std::vector<std::size_t> widths(lines[0].size(), 3);
  for (const auto& cells : lines) {
    for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], width(cells[i]));
  }
  std::string text = line(lines[0], widths);
  for (const std::size_t n : widths) text += "|" + std::string(n + 2, '-');
  text += "|\n";
  for (std::size_t i = 1; i < lines.size(); ++i) text += line(lines[i], widths);
  return text;
}

std::string caption(bool quick, bool hasOther) {
  const std::time_t now = std::time(nullptr);
  char date[32];
  std::strftime(date, sizeof date, "%Y-%m-%d", std::gmtime(&now));
  std::string text = std::string("Measured on ") + date + ", " + processor() + ", g++ " +
                     __VERSION__ + ", " + std::to_string(8 * sizeof(void*)) + " bits, ";
  text += quick ? "in a quick run: the figures are rough." : "best of the rounds.";
  if (!hasOther) text += " The 32-bit build was not measured.";
  return text;
}

std::string misses(const std::vector<Row>& rows) {
  std::string text;
  for (const Row& row : rows) {
    for (const Bar& bar : row.bars) {
      const double ratio = row.reached(bar);
      if (ratio <= 0 || reaches(ratio, bar.factor)) continue;
      text += key(row) + ": " + significant(ratio) + " instead of " +
              formatted("%.3g", bar.factor) + " × " +
              (bar.against.empty() ? row.bestPeer()->name : bar.against) + "\n";
    }
  }
  return text;
}

bool putBetweenMarkers(const std::string& path, const std::string& text) {
  std::ifstream in(path);
  std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const std::size_t opening = content.find(openingMarker);
  const std::size_t closing = content.find(closingMarker);
  if (opening == std::string::npos || closing == std::string::npos || closing < opening) {
    return false;
  }
  const std::size_t start = opening + sizeof openingMarker - 1;
  content.replace(start, closing - start, "\n" + text);
  std::ofstream out(path);
  out << content;
  return static_cast<bool>(out.flush());
}

}  // namespace bench
