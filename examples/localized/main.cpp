// A program with messages of its own: it names them by number, and the dictionaries of each
// language give them words. Here one message is shown in two languages.

#include <cstdio>
#include <string>

#include "loc_loader.h"
#include "localized_loc.h"
#include "tttproc.h"

namespace {

// [numbers]
enum Message { MessageCopied = 0, MessageFileMissing = 1 };
// [/numbers]

// [load]
IDLocLoader dictionary;

bool loadTexts(const char* language, std::string& error) {
  static Loc::Loader loader;
  if (loader.getCount() == 0) {
    Loc::Module* own = new Loc::IdModule(&localized_info, &dictionary);
    own->name = "localized";
    own->mandatory = true;
    loader.append(own);
    loader.append(new Loc::CommonCoreModule);  // the library's own messages too
    TTT::dictionaries[LocDictionary0] = &dictionary;
  }
  return loader.load(language, &error);
}
// [/load]

}  // namespace

int main() {
  // [message]
  TTT report(LocDictionary0, MessageCopied);
  report << 3 << "/home/ada/backup";
  report <= TTT(LocDictionary0, MessageFileMissing) << "letters.txt";
  // [/message]
  for (const char* language : {"eng", "deu"}) {
    std::string text;
    if (loadTexts(language, text)) report.makeMulti(text);
    std::printf("%s\n", text.c_str());
  }
}

// Prints:
// 3 files were copied to /home/ada/backup. The file letters.txt is missing.
// 3 Dateien wurden nach /home/ada/backup kopiert. Die Datei letters.txt fehlt.
