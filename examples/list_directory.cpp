// The plain files of a directory, sorted here, since the system returns them in any order.

#include <algorithm>
#include <string>
#include <vector>

#include "ffproc.h"
#include "utf8io.h"

int main(int argc, char** argv) {
  StringVector<char> args;
  utf8args(argc, argv, args);
  std::vector<std::string> names;
  ZFindFile files(args.getCount() > 1 ? args[1] : nullptr);
  while (files.next()) names.emplace_back(files.entry->d_name);
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) utf8printf("%s\n", name.c_str());
}
