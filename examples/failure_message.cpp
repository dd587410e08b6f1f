// A failure is a message, not a text: the code that fails names it, the code that catches it asks
// for its number or for its text, and only then are words of a language needed.

#include <cstdio>
#include <string>

#include "fileproc.h"
#include "tttproc.h"

int main() {
  try {
    std::string content;
    UTF8File::load("no such file", content, 1000);
  } catch (const TTT& failure) {
    int dictionary = 0;
    int number = 0;
    failure.getErrorCode(&dictionary, &number);
    std::printf("message %d of dictionary %d\n", number, dictionary);

    TTT message("Could not start.\n");
    message <= failure;
    std::string text;
    message.makeMulti(text);
    std::printf("%s\n", text.c_str());
  }
}

// Prints:
// message 4 of dictionary 3
// Could not start.
// ...
