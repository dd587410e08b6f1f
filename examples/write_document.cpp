// A document is written call by call, in either layout, to a file, a bag or both.

#include <cstdio>

#include "bag.h"
#include "mlproc.h"

namespace {

const PairTag kRights[] = {{"read", 1}, {"write", 2}, {"run", 4}, {nullptr, 0}};

void writeUsers(MLDocOut& out) {
  out.beginItem("users");
  out.beginChildren();
  out.beginItem("user");
  out.writeStrAttr("name", "Ada <first>", true);
  out.writeFlagsAttr("rights", 5, kRights);
  out.writeDateAttr("on", 86400, true);
  out.writeDoubleAttr("quota", 2.5, true);
  out.endItem(nullptr);
  out.endItem("users");
}

}  // namespace

int main() {
  Bag bag;
  MLDocOut out;
  out.multiLine = false;
  out.indentSize = 2;
  out.begin(&bag);
  writeUsers(out);
  std::fwrite(bag.getBuffer(), 1, static_cast<unsigned>(bag.getSize()), stdout);
}

// Prints:
// <users>
//   <user name="Ada &lt;first&gt;" rights="read run" on="1970-01-02T00:00:00" quota="2.500000"/>
// </users>
