// The reader's walk over a document, with all attributes, warnings and errors, beside the plain
// model's. The text ends at an unreadable page.
#include "fuzz/fuzz.h"
#include "tests/markup/model_trace.h"
#include "tests/markup/reader_trace.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  fuzz::expect(cc::test::traceOf(text) == cc::test::modelTraceOf(text));
  return 0;
}
