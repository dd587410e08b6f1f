// Reads a document of tasks and prints them; what is wrong with it is told with its place.

#include <cstdio>
#include <string>

#include "mlproc.h"

int main(int argc, char** argv) {
  MLDoc doc;
  MLDoc::Token token;
  try {
    doc.load(argc > 1 ? argv[1] : "tasks.xml");
    for (MLDoc::ChildIterator top(&doc, token); top("tasks");)
      for (MLDoc::ChildIterator task(&doc, token); task("task");) {
        ChArr name;
        doc.convertEscape(doc.getAttributeValue(token, "name"), name);
        const long long minutes = doc.getInt(doc.getAttributeValue(token, "minutes"));
        std::printf("%s: %lld minutes\n", name.c_str(), minutes);
      }
    return 0;
  } catch (const TTT& failure) {
    std::string text;
    failure.makeMulti(text);
    std::printf("%s\n", text.c_str());
    return 1;
  }
}

// Prints:
// Read & answer letters: 30 minutes
// Water the plants: 5 minutes
