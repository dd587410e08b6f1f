// How a document gets its text, and what is left of it after a failure.

#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "tests/files/messages.h"
#include "tests/markup/reader_trace.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::failure;
using cc::test::OpenDoc;
using cc::test::putFile;
using cc::test::TempFolder;
using cc::test::thrownBy;

constexpr int limit = 100'000'000;

TEST(Load, FromMemory) {
  OpenDoc doc;
  const std::string text("\xEF\xBB\xBF<a/>\0", 8);
  doc.load("name", text.data(), static_cast<int>(text.size()));
  EXPECT_EQ(text, doc.content());
  EXPECT_NE(text.data(), doc.begin()) << "a copy";
  EXPECT_STREQ("name", doc.documentName());
  EXPECT_EQ(0U, doc.at()) << "no byte-order mark is skipped";
  MLDoc::Token token;
  EXPECT_TRUE(doc.step(token));
  doc.load(nullptr, nullptr, 0);
  EXPECT_EQ(0U, doc.size());
  EXPECT_EQ(0U, doc.at());
  EXPECT_EQ(nullptr, doc.documentName());
  EXPECT_FALSE(doc.step(token));
  MLDoc none;
  MLDoc::Token level;
  EXPECT_FALSE(MLDoc::ChildIterator(&none, level)()) << "no text at all";
}

TEST(Load, FromAFile) {
  const TempFolder folder;
  const struct {
    std::string content;
    unsigned int position;
  } rows[] = {
      {"<a/>", 0},         {"", 0},         {"\xEF\xBB\xBF<a/>", 3},
      {"\xEF\xBB\xBF", 3}, {"\xEF\xBB", 0}, {"\xEF\xBB<", 0},
  };
  for (const auto& row : rows) {
    const std::string path = putFile(folder / "d\xC3\xB6\x63.xml", row.content);
    OpenDoc doc("<old/>");
    doc.MLDoc::load(path.c_str());
    EXPECT_EQ(row.content, doc.content());
    EXPECT_EQ(row.position, doc.at());
    EXPECT_EQ(path, doc.documentName());
    EXPECT_NE("(nothing)", thrownBy([&] { doc.load(static_cast<const char*>(nullptr)); }));
    EXPECT_EQ(nullptr, doc.begin());
  }
}

TEST(Load, TheLargestSize) {
  OpenDoc doc;
  const ArrayHolder<char> zeros(new char[limit]());
  doc.load("name", zeros.get(), limit);
  EXPECT_EQ(static_cast<unsigned int>(limit), doc.size());
  MLDoc::Token token;
  EXPECT_FALSE(doc.step(token));
  // Nothing of the data is looked at.
  for (const int size : {limit + 1, INT_MAX, -1, INT_MIN}) {
    EXPECT_EQ(failure(29, "name", 0), thrownBy([&] { doc.load("name", nullptr, size); })) << size;
    EXPECT_EQ(nullptr, doc.begin());
    EXPECT_FALSE(doc.step(token));
    EXPECT_EQ(failure(29, "", 0), thrownBy([&] { doc.load("", nullptr, size); })) << size;
  }
  const TempFolder folder;
  const std::string path = putFile(folder / "large", "");
  std::filesystem::resize_file(path, limit + 1);
  EXPECT_EQ(failure(29, path, 0), thrownBy([&] { doc.load(path.c_str()); }));
}

TEST(Load, FromItsOwnTextAndName) {
  OpenDoc doc;
  const std::string text = "<outer>inner</outer>";
  doc.load("a name of some length", text.data(), static_cast<int>(text.size()));
  doc.load(doc.documentName() + 2, doc.begin() + 7, 5);
  EXPECT_EQ("inner", doc.content());
  EXPECT_STREQ("name of some length", doc.documentName());

  const TempFolder folder;
  const std::string path = putFile(folder / "f", "<a/>");
  doc.load("n", path.c_str(), static_cast<int>(path.size()) + 1);
  doc.MLDoc::load(doc.begin());
  EXPECT_EQ("<a/>", doc.content());
  doc.MLDoc::load(doc.documentName());
  EXPECT_EQ("<a/>", doc.content());
}

TEST(Load, WhenMemoryDoesNotSuffice) {
  const TempFolder folder;
  const std::string path = putFile(folder / "f", "<new/>");
  int messages = 0;
  const auto check = [&](cc::test::AllocSweep& sweep, const std::function<void(OpenDoc&)>& load) {
    OpenDoc doc("<old/>");
    bool thrown = false;
    const bool done = sweep.attempt([&] {
      try {
        load(doc);
      } catch (const TTT& message) {
        int code = 0;
        thrown = message.getErrorCode(nullptr, &code) && code == cc::MsgNoMemory;
      }
    });
    messages += thrown;
    // A message, or the failure to make one, comes after the old text went.
    const bool hasText = doc.begin() != nullptr;
    EXPECT_EQ(done && !thrown, hasText && doc.content() == "<new/>");
    EXPECT_TRUE(!thrown || !hasText);
    MLDoc::Token token;
    EXPECT_EQ(hasText, doc.step(token));
  };
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    check(sweep, [](OpenDoc& doc) { doc.load("name", "<new/>", 6); });
  });
  EXPECT_EQ(1, messages) << "once only the text's allocation failed";
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    check(sweep, [&](OpenDoc& doc) { doc.MLDoc::load(path.c_str()); });
  });
  EXPECT_EQ(2, messages);
}

}  // namespace
