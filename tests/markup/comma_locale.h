/// @file
/// A numeric locale with a decimal comma, compiled on the spot, so that no locale needs to be
/// installed.
#pragma once

#include <clocale>
#include <cstdlib>
#include <string>

#include "tests/support/temp_folder.h"

namespace cc::test {

/// While it lives, numbers of the process, or of this thread alone, have a decimal comma.
class CommaLocale {
 public:
  enum Scope { Process, Thread };

  explicit CommaLocale(Scope scope) {
    std::string charmap = "<code_set_name> ASCII\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
    for (int i = 0; i < 128; ++i) {
      char line[64];
      std::snprintf(line, sizeof line, "<U%04X> /x%02x c\n", static_cast<unsigned int>(i),
                    static_cast<unsigned int>(i));
      charmap += line;
    }
    putFile(folder / "ascii", charmap + "END CHARMAP\n");
    putFile(folder / "source",
            "comment_char %\nescape_char /\nLC_NUMERIC\ndecimal_point \"<U002C>\"\n"
            "thousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    // It complains about the missing categories, which are never asked for.
    const std::string command = "localedef -c -i " + (folder / "source") + " -f " +
                                (folder / "ascii") + " " + (folder / "comma") + " >" +
                                (folder / "log") + " 2>&1";
    if (std::system(command.c_str()) == -1) return;
    ::setenv("LOCPATH", (folder / "").c_str(), 1);
    if (scope == Process) {
      ready = std::setlocale(LC_NUMERIC, "comma") != nullptr;
    } else {
      object = ::newlocale(LC_NUMERIC_MASK, "comma", nullptr);
      ready = object != nullptr;
      if (ready) ::uselocale(object);
    }
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() {
    std::setlocale(LC_NUMERIC, "C");
    ::uselocale(LC_GLOBAL_LOCALE);
    if (object) ::freelocale(object);
  }

  /// True when the C library's own formatting shows the comma.
  bool isInForce() const {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    return ready && std::string(text) == "0,5";
  }

 private:
  TempFolder folder;
  locale_t object = nullptr;
  bool ready = false;
};

}  // namespace cc::test
