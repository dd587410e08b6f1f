// Operations that allocate where no other test fails their allocations: what throws leaves no block
// and no descriptor behind, and what it was called on as its header says.

#include <gtest/gtest.h>

#include <functional>

#include "charproc.h"
#include "loc_loader.h"
#include "mlproc.h"
#include "rundetector.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::AllocSweep;
using cc::test::TempFolder;

TEST(Memory, WhatFailsLeavesNothing) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const unsigned short units[] = {'a', 0x430};
  const std::string digits(400, '1');
  const std::string name(100, 'n');
  const TTT message = TTT(LocDictionaryCommonCore, 25) << name.c_str();
  MLDoc doc;
  const std::string text = "<a b=\"" + name + "\t\"/>";
  UTF8File file(true);
  MLDocOut out;
  const auto loads = [&] { doc.load(name.c_str(), text.data(), static_cast<int>(text.size())); };
  const auto writes = [&] {
    out.begin(path.c_str());
    out.end();
  };
  struct Row {
    const char* name;
    std::function<void()> action;
  };
  const Row rows[] = {
      // copies
      {"bytes", [&] { delete[] strnew("abc", 3); }},
      {"bytes of units", [&] { delete[] strnew(units, units + 2); }},
      {"units", [&] { delete[] strnew16(units, 2); }},
      {"units of bytes", [&] { delete[] strnew16(name.data(), name.data() + 10); }},
      {"bytes added to none",
       [&] {
         char* s = nullptr;
         stradd(s, 0, "abc", 3);
         delete[] s;
       }},
      {"room of a vector", [&] { SimpleVector<int>().expand(100); }},
      {"modules", [&] { Loc::Loader().append(nullptr); }},
      // messages
      {"text", [&] { const TTT made(name.c_str()); }},
      {"string", [&] { const TTT made(name); }},
      {"head", [&] { const TTT made(LocDictionary0, 5); }},
      {"bag", [&] { const TTT made(message.getBag()); }},
      {"message", [&] { EXPECT_FALSE(TTT(message).getBag().getSize() == 0); }},
      {"assigned message", [&] { TTT() = message; }},
      // failures
      {"of a document", [&] { doc.erro(message); }},
      {"of an integer", [&] { doc.getInt(ChPair("x")); }},
      {"of a file", [&] { file.erro(message, "name", 2); }},
      {"of opening", [&] { file.open((path + "/x").c_str(), UTF8File::ModeRead); }},
      {"of a directory", [&] { file.mkdir((path + "/x/y").c_str()); }},
      // the rest
      {"number without an end",
       [&] { EXPECT_LT(1e298, doc.getDouble(ChPair(&digits[0], &digits[300]))); }},
      {"warning",
       [&] {
         MLDoc::Token token;
         MLDoc::Attribute attribute;
         loads();
         EXPECT_TRUE(doc.step(token) && doc.attribute(token, attribute));
       }},
      {"written document", writes},
      {"saved file", [&] { UTF8File::save(path.c_str(), name); }},
      {"running copy", [&] { const RunDetector detector(name.c_str(), name.c_str()); }},
      {"running copy of the own name", [&] { const RunDetector detector(name.c_str(), nullptr); }},
  };
  // What these keep between the runs.
  loads();
  writes();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const int descriptors = cc::test::openDescriptors();
    std::size_t failed = 0;
    cc::test::sweepAllocations([&](AllocSweep& sweep) {
      sweep.attempt([&] {
        try {
          row.action();
        } catch (const TTT&) {
        }
      });
      out.end();
      loads();
      failed += sweep.hasFailed() ? 1 : 0;
    });
    EXPECT_LT(0U, failed) << "nothing was allocated";
    EXPECT_EQ(descriptors, cc::test::openDescriptors());
  }
}

}  // namespace
