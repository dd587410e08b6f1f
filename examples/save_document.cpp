// A document is written into a bag and replaces its file whole: a reader finds the old one or the
// new one, never a half.

#include <cstdio>
#include <string>

#include "bag.h"
#include "fileproc.h"
#include "mlproc.h"

namespace {

const char kPath[] = "save_document.example";

void save(const char* theme, unsigned int size) {
  Bag bag;
  MLDocOut out;
  out.begin(&bag);
  out.beginItem("settings");
  out.beginChildren();
  out.beginItem("font");
  out.writeStrAttr("theme", theme, true);
  out.writeUIntAttr("size", size, true);
  out.endItem(nullptr);
  out.endItem("settings");
  UTF8File::saveAtomic(kPath, bag);
}

}  // namespace

int main() {
  save("dark", 11);
  save("light & plain", 12);
  std::string text;
  UTF8File::load(kPath, text, 1000);
  std::printf("%s", text.c_str());
  UTF8File(false).remove(kPath);
}

// Prints:
// <settings
// 	>
// 	<font
// 		theme="light &amp; plain"
// 		size="12"
// 	/>
// </settings>
