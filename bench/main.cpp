// cc_bench: measures the library against its peers and the physical limit and prints the table.

#include <locale.h>
#include <malloc.h>
#include <sched.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "charproc.h"
#include "families.h"
#include "harness.h"
#include "table.h"

namespace {

const char usage[] =
    "cc_bench [OPTION...] [FILTER...]\n"
    "\n"
    "Measures the rows whose \"operation, input\" contains a FILTER, or all of them, and prints\n"
    "the table. Exits with 1 when two contestants' results differ.\n"
    "\n"
    "  --quick         short turns, for work on a row; the figures are rough\n"
    "  --check         compare the results and measure nothing\n"
    "  --detail        print best, median and spread of every contestant\n"
    "  --ours          measure our own figures only\n"
    "  --cpu N         run on processor N (default: the one it starts on)\n"
    "  --markdown      print the table alone, without the rows below their bar\n"
    "  --readme FILE   put caption and table between the markers of FILE\n"
    "  --save FILE     write our figures to FILE\n"
    "  --merge FILE    take the column of 32 bits from FILE\n";

struct Arguments {
  bench::Options options;
  bool markdown = false;
  std::string cpu, readme, save, merge;
};

// False for an argument that it does not know.
bool parse(int argc, char** argv, Arguments& arguments) {
  const std::map<std::string, bool*> switches = {{"--quick", &arguments.options.quick},
                                                 {"--check", &arguments.options.checkOnly},
                                                 {"--detail", &arguments.options.detail},
                                                 {"--ours", &arguments.options.oursOnly},
                                                 {"--markdown", &arguments.markdown}};
  const std::map<std::string, std::string*> values = {{"--cpu", &arguments.cpu},
                                                      {"--readme", &arguments.readme},
                                                      {"--save", &arguments.save},
                                                      {"--merge", &arguments.merge}};
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const auto toggle = switches.find(argument);
    const auto value = values.find(argument);
    if (toggle != switches.end()) {
      *toggle->second = true;
    } else if (value != values.end() && i + 1 < argc) {
      *value->second = argv[++i];
    } else if (argument.empty() || argument[0] == '-') {
      return false;
    } else {
      arguments.options.filters.push_back(argument);
    }
  }
  return arguments.readme.empty() || arguments.options.filters.empty();  // no half table there
}

void pin(const std::string& cpu) {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(static_cast<std::size_t>(cpu.empty() ? sched_getcpu() : std::atoi(cpu.c_str())), &set);
  if (sched_setaffinity(0, sizeof set, &set) != 0) std::perror("pinning to a processor");
}

// Freed memory stays with the process, so that nobody's figures depend on how long the kernel takes
// to hand out fresh pages; all contestants allocate through the same allocator.
void keepMemory() {
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, -1);
}

int report(const bench::Bench& bench, const Arguments& arguments) {
  bench::Figures other;
  if (!arguments.merge.empty() && !bench::loadFigures(arguments.merge, other)) {
    std::perror(arguments.merge.c_str());
    return 2;
  }
  if (!arguments.save.empty() && !bench::saveFigures(arguments.save, bench.rows())) {
    std::perror(arguments.save.c_str());
    return 2;
  }
  const std::string table = bench::table(bench.rows(), other);
  const std::string caption = bench::caption(arguments.options.quick, !other.empty());
  if (!arguments.readme.empty() &&
      !bench::putBetweenMarkers(arguments.readme, caption + "\n\n" + table)) {
    std::fprintf(stderr, "%s: no markers, or it cannot be written\n", arguments.readme.c_str());
    return 2;
  }
  std::printf("\n%s\n\n%s", caption.c_str(), table.c_str());
  if (!arguments.markdown) {
    const std::string misses = bench::misses(bench.rows());
    std::printf("\n%s", misses.empty() ? "Every bar is reached.\n"
                                       : ("Below their bar:\n" + misses).c_str());
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  if (!parse(argc, argv, arguments)) {
    std::fputs(usage, stderr);
    return 3;
  }
  setlocale(LC_ALL, "C.UTF-8");
  chr_tables_prepare();
  pin(arguments.cpu);
  keepMemory();

  bench::Bench bench(arguments.options);
  for (const auto family :
       {bench::codecRows, bench::stringRows, bench::numberRows, bench::bagRows, bench::messageRows,
        bench::readingRows, bench::writingRows, bench::fileRows}) {
    family(bench);
  }
  int code = 0;
  if (arguments.options.checkOnly) {
    std::printf("\n%zu rows agree\n", bench.rows().size());
  } else {
    code = report(bench, arguments);
  }
  if (bench.mismatches() > 0) {
    std::printf("\n%d results differ\n", bench.mismatches());
    return 1;
  }
  return code;
}
