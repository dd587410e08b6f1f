// Whole files, lines, and the loading of the library itself, which a small program of its own does
// in a fresh process each time.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "families.h"
#include "fileproc.h"
#include "harness.h"
#include "inputs.h"
#include "peers.h"
#include "scratch.h"

namespace bench {
namespace {

// What a program does that knows its system: one look at the size, one read.
std::size_t loadByRead(const char* path, std::unique_ptr<char[]>& content) {
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  struct stat info;
  if (file < 0 || fstat(file, &info) != 0) return 0;
  const auto size = static_cast<std::size_t>(info.st_size);
  content.reset();
  content.reset(new char[size]);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = read(file, content.get() + done, size - done);
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  close(file);
  return done;
}

void loading(Bench& bench, const char* input, const std::string& path, std::size_t size) {
  Row row("UTF8File::load", input);
  ArrayHolder<char> ours;
  std::unique_ptr<char[]> theirs;
  const auto most = static_cast<unsigned int>(size);
  row.bytes(size).output([&] { return std::string(ours.get(), size); });
  row.ours([&]() -> std::size_t { return UTF8File::load(path.c_str(), ours, most, false); });
  row.output([&] { return std::string(theirs.get(), size); });
  row.peer("read(2)", [&] { return loadByRead(path.c_str(), theirs); });
  bench.run(std::move(row.atLeast(1)));
}

void readingLines(Bench& bench, const std::string& path, std::size_t size) {
  Row row("UTF8File::readLine", "French, 1 MB");
  row.bytes(size);
  row.ours([&path] {
    UTF8File file(true);
    std::size_t sum = 0;
    char line[4096];
    bool eof = false;
    file.open(path.c_str(), UTF8File::ModeRead);
    while (file.readLine(line, sizeof line, &eof) && !eof) {
      sum = 31 * sum + static_cast<unsigned char>(line[0]);
    }
    return sum;
  });
  row.peer("getline(3)", [&path] {
    FILE* file = std::fopen(path.c_str(), "rb");
    std::size_t sum = 0, room = 0;
    char* line = nullptr;
    for (;;) {
      const ssize_t length = getline(&line, &room, file);
      if (length < 0) break;
      if (length > 0 && line[length - 1] == '\n') line[length - 1] = 0;
      sum = 31 * sum + static_cast<unsigned char>(line[0]);
    }
    std::free(line);
    std::fclose(file);
    return sum;
  });
  bench.run(std::move(row.atLeast(0.9)));
}

// Nanoseconds that the probe needs to load `library` in a fresh process.
double probe(const std::string& library, long runs) {
  double sum = 0;
  for (long i = 0; i < runs; ++i) {
    double time = 0;
    const std::string command = std::string("LC_ALL=C.UTF-8 '" BENCH_PROBE "' '") + library + "'";
    FILE* out = popen(command.c_str(), "r");
    if (!out || std::fscanf(out, "%lf", &time) != 1) time = 1e12;
    if (out) pclose(out);
    sum += time;
  }
  return sum;
}

void loadingLibrary(Bench& bench) {
  Row row("loading the library", "dlopen in a fresh process");
  row.items(1);
  row.selfTimed(Role::Ours, "ours", [](long runs) { return probe(BENCH_LIBRARY, runs); });
  if (const char* peer = libraryPeer()) {
    row.selfTimed(Role::Peer, "ICU", [peer](long runs) { return probe(peer, runs); });
  }
  bench.run(std::move(row.atMost(120).atLeast(0.5, "ICU")));
}

}  // namespace

void fileRows(Bench& bench) {
  const Scratch scratch;
  const std::string text = sentences(French, megabyte, 15) + "\n";
  const std::string page = text.substr(0, 4096);
  const std::string pagePath = scratch.write("page", page);
  const std::string textPath = scratch.write("text", text);
  loading(bench, "4 KB", pagePath, page.size());
  loading(bench, "1 MB", textPath, text.size());
  if (bench.wants("UTF8File::load", "50 MB")) {
    const Buffer<char>& large = textRecords().bytes;
    loading(bench, "50 MB", scratch.write("large", large.view()), large.size());
  }
  readingLines(bench, textPath, text.size());
  loadingLibrary(bench);
}

}  // namespace bench
