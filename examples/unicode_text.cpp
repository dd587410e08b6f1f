// UTF-8 text is checked, counted, compared and searched where it stands, without regard to case.

#include <cstdio>
#include <cstring>

#include "charproc.h"
#include "charr.h"
#include "chpair.h"
#include "utf8proc.h"

int main() {
  const char text[] = "Ein Caf\xC3\xA9 in Paris";
  const ChPair all(text);
  std::printf("%u bytes, %u characters, %s\n", all.length(), strlen_utf8(all.begin, all.end),
              strchk_utf8(all.begin, all.length()) ? "damaged" : "valid");

  const ChPair wanted("CAF\xC3\x89");
  if (const char* found = strfind_i_utf8(all.begin, all.end, wanted.begin, wanted.end))
    std::printf("found at byte %d\n", static_cast<int>(found - all.begin));

  ChPair key;
  ChPair value(" colour = dark red ");
  value.split(key, '=', value);
  ChArr copy;
  value.trimmed();
  copy.assign(value.begin, value.end);
  copy.insert("<");
  copy += ">";
  std::printf("%s\n", copy.c_str());
}

// Prints:
// 18 bytes, 17 characters, valid
// found at byte 4
// <dark red>
