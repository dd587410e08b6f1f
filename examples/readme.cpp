#include <cstdio>
#include <string>

#include "mlproc.h"

int main(int argc, char** argv) {
  MLDoc doc;
  MLDoc::Token token;
  try {
    doc.load(argc > 1 ? argv[1] : "servers.xml");
    MLDoc::ChildIterator top(&doc, token);
    while (top("servers"))
      for (MLDoc::ChildIterator server(&doc, token); server("server");)
        std::printf("port %lld\n", doc.getInt(doc.getAttributeValue(token, "port")));
  } catch (const TTT& failure) {
    std::string text;
    failure.makeMulti(text);  // in the user's language
    std::printf("%s\n", text.c_str());
  }
}
