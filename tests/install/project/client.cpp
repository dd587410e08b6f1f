// A client that touches every folder of the library: it fails to load a document, and shows the
// message in English and in the language of its argument; it is the one running copy meanwhile.

#include <bag.h>
#include <loc_loader.h>
#include <mlproc.h>
#include <rundetector.h>
#include <utf8io.h>

#include <string>

namespace {

void show(const TTT& message) {
  std::string text;
  message.makeMulti(text);
  utf8printf(stdout, "%s\n", text.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  StringVector<char> args;
  utf8args(argc, argv, args);
  RunDetector detector("outside", nullptr);
  utf8printf(stdout, "lock: %d\n", detector.lock());

  const char text[] = "<a>\n  <b c=\"1\">\n</a>";
  MLDoc doc;
  doc.load("text", text, sizeof text - 1);
  try {
    MLDoc::Token token;
    for (MLDoc::ChildIterator top(&doc, token); top();)
      for (MLDoc::ChildIterator child(&doc, token); child();)
        doc.getDouble(doc.getAttributeValue(token, "d"));
  } catch (const TTT& failure) {
    show(failure);
    Loc::Loader loader;
    loader.append(new Loc::CommonCoreModule);
    std::string error;
    if (!loader.load(args[1], &error)) utf8printf(stdout, "%s\n", error.c_str());
    show(failure);
  }
  detector.unlock();
  return 0;
}
