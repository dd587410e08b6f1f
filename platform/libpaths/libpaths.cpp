// Each path is composed at each call in a buffer of the calling thread, so that no call allocates,
// waits for another thread or frees what an earlier caller still holds.

#include "libpaths.h"

#include <cstdlib>
#include <cstring>

#ifndef COMMON_CORE_DEFAULT_ETC_DIR
#define COMMON_CORE_DEFAULT_ETC_DIR "/etc/common_core/"
#endif
#ifndef COMMON_CORE_DEFAULT_DATA_DIR
#define COMMON_CORE_DEFAULT_DATA_DIR "/var/lib/common_core/"
#endif

namespace {

/// Room for a path of the system's greatest length, its terminator included.
struct Buffer {
  char text[4096];
};

static_assert(sizeof(COMMON_CORE_DEFAULT_ETC_DIR) < sizeof(Buffer));
static_assert(sizeof(COMMON_CORE_DEFAULT_DATA_DIR) < sizeof(Buffer));

const char* directory(Buffer& buffer, const char* variable, const char* standard) {
  const char* chosen = secure_getenv(variable);
  if (!chosen || !*chosen || std::strlen(chosen) > sizeof(buffer.text) - 2) chosen = standard;
  std::size_t length = std::strlen(chosen);
  std::memcpy(buffer.text, chosen, length);
  if (length == 0 || buffer.text[length - 1] != '/') buffer.text[length++] = '/';
  buffer.text[length] = 0;
  return buffer.text;
}

}  // namespace

const char* agentEtcDir() {
  thread_local Buffer buffer;
  return directory(buffer, "COMMON_CORE_ETC_DIR", COMMON_CORE_DEFAULT_ETC_DIR);
}

const char* userDataCommonDirForWrite_utf8() {
  thread_local Buffer buffer;
  return directory(buffer, "COMMON_CORE_DATA_DIR", COMMON_CORE_DEFAULT_DATA_DIR);
}
