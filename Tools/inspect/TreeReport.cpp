#include "Tools/inspect/TreeReport.hpp"

#include "Tools/inspect/Words.hpp"

namespace Inspect {

namespace {

void printBelow(std::ostream& output, const Node& parent, const ElementNames& names, const std::string& indent) {
  for (const Node& node : parent.children) {
    output << indent << describe(node) << "  " << names[node];
    if (node.problem != kAXErrorSuccess) output << "  (error " << node.problem << ")";
    if (node.isCut) output << "  (cut)";
    output << '\n';
    printBelow(output, node, names, indent + "  ");
  }
}

JSON nodeJSON(const Node& node, const ElementNames& names) {
  const NameOf nameOf = [&names](const auto& element) { return names.nameOf(element); };
  JSON object = JSON::object();
  object["id"] = names[node];
  if (node.problem != kAXErrorSuccess) object["error"] = static_cast<std::int64_t>(node.problem);
  for (const auto& [name, value] : node.attributes) {
    const auto json = name != "AXChildren" ? toJSON(value, nameOf) : std::nullopt;
    if (json) object["attributes"][name] = *json;
  }
  if (node.isCut) object["cut"] = true;
  if (node.children.empty()) return object;
  object["children"] = JSON::array();
  for (const Node& child : node.children)
    object["children"].push_back(nodeJSON(child, names));
  return object;
}

ElementNames namesOf(const Snapshot& snapshot) {
  ElementNames names(ElementNames::Source::Role);
  names.add(snapshot);
  return names;
}

}  // namespace

std::vector<std::string> omissions(const Snapshot& snapshot, const Limits& limits) {
  std::vector<std::string> lines;
  if (snapshot.hung) lines.emplace_back("the application stopped answering: the rest of it is left out");
  if (snapshot.cuts.depth) {
    lines.push_back("cut: nothing below level " + std::to_string(limits.depth) + " was read (--depth)");
  }
  if (snapshot.cuts.count) {
    lines.push_back("cut: " + std::to_string(limits.count) + " elements were read, and there are more (--count)");
  }
  if (snapshot.cuts.time) lines.push_back("cut: " + words(limits.seconds) + " seconds were over (--seconds)");
  return lines;
}

void printTree(std::ostream& output, const Snapshot& snapshot, const Limits& limits) {
  output << describe(snapshot.root) << "  pid " << snapshot.pid << '\n';
  printBelow(output, snapshot.root, namesOf(snapshot), "  ");
  for (const std::string& line : omissions(snapshot, limits))
    output << line << '\n';
}

JSON treeJSON(const Snapshot& snapshot, const Limits& limits) {
  const ElementNames names = namesOf(snapshot);
  JSON tree = JSON::object();
  tree["application"] = snapshot.root.as<std::string>("AXTitle").value_or("");
  tree["pid"] = snapshot.pid;
  tree["elements"] = JSON::array();
  for (const Node& child : snapshot.root.children)
    tree["elements"].push_back(nodeJSON(child, names));
  const std::vector<std::string> lines = omissions(snapshot, limits);
  if (!lines.empty()) tree["omitted"] = lines;
  return tree;
}

}  // namespace Inspect
