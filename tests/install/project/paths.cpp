// Asks libpaths itself for its directories.

#include <libpaths.h>

#include <cstdio>

int main() { std::printf("%s\n%s\n", agentEtcDir(), userDataCommonDirForWrite_utf8()); }
