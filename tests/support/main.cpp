// The main program of every test program. CC_TEST_LOCALE=process makes the locale of the
// environment that of the process before the tests begin, as a client may; =thread makes it that of
// the thread that runs the tests.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

// The C library never frees the path that it searches for locales.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace {

bool adoptLocale(const std::string& scope) {
  if (scope == "process") return std::setlocale(LC_ALL, "") != nullptr;
  if (scope == "thread") {
    const locale_t locale = ::newlocale(LC_ALL_MASK, "", nullptr);
    return locale && ::uselocale(locale);
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const char* const scope = std::getenv("CC_TEST_LOCALE");
  if (scope && !adoptLocale(scope)) {
    std::fprintf(stderr, "CC_TEST_LOCALE=%s: no such scope or locale\n", scope);
    return 2;
  }
  return RUN_ALL_TESTS();
}
