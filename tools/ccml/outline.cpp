// One walk collects nodes; a node's children keep the order in which they first appeared. Printing
// follows the nodes without recursion, since documents decide how deep they nest.
#include "outline.h"

#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "check.h"
#include "json.h"

namespace ccml {

namespace {

using Counts = std::vector<std::pair<std::string, int>>;

struct Node {
  std::string name;
  int count = 0;
  Counts attributes;
  std::vector<int> children;
  std::map<std::string, int, std::less<>> byName;
};

class Tree {
 public:
  explicit Tree(Document& document) : doc(document), nodes(1) {}

  void read() {
    MLDoc::Token token;
    Tag tag;
    std::vector<int> parents = {0};
    while (doc.step(token)) {
      if (token.type != MLDoc::Token::Element) continue;
      if (!token.opening) {
        if (parents.size() > 1) parents.pop_back();
        continue;
      }
      const int node = childOf(parents.back(), std::string_view(token.name));
      ++nodes[static_cast<std::size_t>(node)].count;
      readTag(doc, token, tag);
      countAttributes(nodes[static_cast<std::size_t>(node)].attributes, tag);
      doc.seek(doc.offsetOf(token.tag.end));
      if (!token.closing) parents.push_back(node);
    }
  }

  std::string asText() const {
    std::string out;
    walk([&](const Node& node, int depth, bool opening, bool) {
      if (!opening) return;
      out.append(2 * static_cast<std::size_t>(depth), ' ');
      out += node.name + " " + std::to_string(node.count) + "\n";
      for (const auto& [name, count] : node.attributes) {
        out.append(2 * static_cast<std::size_t>(depth) + 2, ' ');
        out += "@" + name + " " + std::to_string(count) + "\n";
      }
    });
    return out;
  }

  std::string asJson() const {
    std::string out;
    walk([&](const Node& node, int, bool opening, bool first) {
      if (!opening) {
        out += "]}";
        return;
      }
      if (!first) out += ",";
      out += "{\"name\":" + tools::json_string(node.name) +
             ",\"count\":" + std::to_string(node.count) + ",\"attributes\":{";
      const char* separator = "";
      for (const auto& [name, count] : node.attributes) {
        out += separator + tools::json_string(name) + ":" + std::to_string(count);
        separator = ",";
      }
      out += "},\"children\":[";
    });
    return out;
  }

 private:
  int childOf(int parent, std::string_view name) {
    Node& node = nodes[static_cast<std::size_t>(parent)];
    const auto known = node.byName.find(name);
    if (known != node.byName.end()) return known->second;
    const int child = static_cast<int>(nodes.size());
    node.byName.emplace(name, child);
    node.children.push_back(child);
    nodes.emplace_back().name = name;
    return child;
  }

  static void countAttributes(Counts& counts, const Tag& tag) {
    for (const MLDoc::Attribute& attribute : tag.attributes) {
      const std::string_view name = attribute.name;
      std::size_t i = 0;
      while (i != counts.size() && counts[i].first != name) ++i;
      if (i == counts.size()) counts.emplace_back(name, 0);
      ++counts[i].second;
    }
  }

  // Calls `visit` with each node, its depth, whether it opens or closes, and whether it is the
  // first of its parent.
  template <class Visit>
  void walk(Visit visit) const {
    std::vector<std::pair<const Node*, std::size_t>> path = {{&nodes[0], 0}};
    while (!path.empty()) {
      const int depth = static_cast<int>(path.size()) - 1;
      auto& [node, next] = path.back();
      if (next == node->children.size()) {
        const Node* done = node;
        path.pop_back();
        if (depth > 0) visit(*done, depth - 1, false, false);
        continue;
      }
      const Node& child = nodes[static_cast<std::size_t>(node->children[next])];
      const bool first = next++ == 0;
      visit(child, depth, true, first);
      path.emplace_back(&child, 0);
    }
  }

  Document& doc;
  std::vector<Node> nodes;
};

}  // namespace

bool outline(Document& document, const std::string& path, Format format, Findings& findings) {
  const unsigned int start = document.offset();
  check(document, false, findings);
  for (const Finding& found : findings) {
    if (found.severity == Severity::Error) return false;
  }
  document.seek(start);
  Tree tree(document);
  tree.read();
  if (format == Format::Json) {
    print("{\"name\":" + tools::json_string(path) + ",\"elements\":[" + tree.asJson() + "]}");
  } else {
    print(tree.asText());
  }
  return true;
}

}  // namespace ccml
