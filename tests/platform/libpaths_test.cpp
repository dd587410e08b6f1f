// libpaths: what the environment makes of the directories.

#include "libpaths.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

struct Directory {
  const char* variable;
  const char* (*get)();
};

const Directory directories[] = {{"COMMON_CORE_ETC_DIR", agentEtcDir},
                                 {"COMMON_CORE_DATA_DIR", userDataCommonDirForWrite_utf8}};

TEST(LibPaths, TheEnvironmentIsReadAtEachCall) {
  for (const Directory& directory : directories) {
    SCOPED_TRACE(directory.variable);
    ::unsetenv(directory.variable);
    const std::string standard = directory.get();
    EXPECT_EQ('/', standard.back());
    EXPECT_NE(std::string::npos, standard.find("common_core"));
    const std::string longest(4094, 'x');
    const std::pair<std::string, std::string> rows[] = {
        {"/some/where/", "/some/where/"},
        {"a", "a/"},
        {"", standard},
        {"/\xD1\x84//", "/\xD1\x84//"},
        {longest, longest + "/"},
        {longest + "x", standard},
    };
    for (const auto& [value, expected] : rows) {
      ::setenv(directory.variable, value.c_str(), 1);
      EXPECT_EQ(expected, directory.get()) << value;
    }
    ::unsetenv(directory.variable);
    EXPECT_EQ(standard, directory.get());
  }
}

TEST(LibPaths, EachThreadAndEachFunctionHasItsOwnText) {
  ::setenv("COMMON_CORE_ETC_DIR", "/first", 1);
  ::setenv("COMMON_CORE_DATA_DIR", "/second", 1);
  const char* etc = agentEtcDir();
  const char* data = userDataCommonDirForWrite_utf8();
  ::setenv("COMMON_CORE_ETC_DIR", "/other", 1);
  std::thread([] { EXPECT_STREQ("/other/", agentEtcDir()); }).join();
  EXPECT_STREQ("/first/", etc);
  EXPECT_STREQ("/second/", data);
  ::unsetenv("COMMON_CORE_ETC_DIR");
  ::unsetenv("COMMON_CORE_DATA_DIR");
}

}  // namespace
