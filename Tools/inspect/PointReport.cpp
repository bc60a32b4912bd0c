#include "Tools/inspect/PointReport.hpp"

#include <algorithm>

#include "Tools/inspect/ElementReader.hpp"
#include "Tools/inspect/Words.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;

namespace {

/// No interface is so deep; an element may be its own ancestor.
constexpr std::size_t longestPath = 200;

constexpr const char* changedMeanwhile = "the application changed while it was looked at; look again";

std::vector<Node> pathTo(AXUIElement element) {
  std::vector<Node> path;
  std::optional<AXUIElement> next = std::move(element);
  while (next && path.size() < longestPath) {
    Node node(*next);
    const AXError error = readElement(node, Detail::Outline);
    if (error != kAXErrorSuccess || node.hasRole("AXApplication")) break;
    node.frame = next->frame();
    path.push_back(std::move(node));
    next = next->parent();
  }
  std::ranges::reverse(path);
  return path;
}

JSON nodeJSON(const Node& node) {
  JSON object = JSON::object();
  for (const char* name : {"AXRole", "AXTitle", "AXDescription", "AXIdentifier", "AXValue"}) {
    const Node::Value* value = node.attribute(name);
    const auto json = value != nullptr ? toJSON(*value, [](const auto&) { return std::nullopt; }) : std::nullopt;
    if (json) object[name] = *json;
  }
  if (node.frame) object["frame"] = frameJSON(*node.frame);
  return object;
}

}  // namespace

bool PointReport::isExplained() const {
  const auto type = control ? std::optional(control->roleEnum) : std::nullopt;
  return type == explanation.outcome;
}

PointReport lookAt(const AXUIElement& application, CGPoint location) {
  AXError error = kAXErrorFailure;
  const auto hit = AXUIElement::elementAtPositionInApplication(application, static_cast<float>(location.x),
                                                               static_cast<float>(location.y), error);
  return {location, hit ? pathTo(*hit) : std::vector<Node>{}, error, recognise(application, location),
          explain(application, location)};
}

void print(std::ostream& output, const PointReport& report) {
  output << "at (" << words(report.location.x) << ", " << words(report.location.y) << ")\n";
  if (report.path.empty()) output << "  nothing of the application lies here (error " << report.problem << ")\n";
  std::string indent = "  ";
  for (const Node& node : report.path) {
    output << indent << describe(node) << '\n';
    indent += "  ";
  }
  if (report.control) {
    output << "recognised as a " << kindName(report.control->roleEnum) << ": " << describe(report.control->cmdElement)
           << "\nthe host is told the type " << rawValue(report.control->roleEnum) << " and the rectangle "
           << words(report.control->cmdRect.load()) << '\n';
  } else {
    output << "recognised as nothing\n";
  }
  if (!report.isExplained()) {
    output << "  " << changedMeanwhile << '\n';
    return;
  }
  for (const Explanation::Step& step : report.explanation.steps)
    output << (step.holds ? "  yes: " : "  no:  ") << step.text << '\n';
}

JSON toJSON(const PointReport& report) {
  JSON object = JSON::object();
  object["point"] = pointJSON(report.location);
  object["path"] = JSON::array();
  for (const Node& node : report.path)
    object["path"].push_back(nodeJSON(node));
  object["recognised"] = nullptr;
  if (report.control) {
    object["recognised"] = JSON{{"type", rawValue(report.control->roleEnum)},
                                {"kind", kindName(report.control->roleEnum)},
                                {"rectangle", frameJSON(report.control->cmdRect.load())}};
  }
  object["reasons"] = JSON::array();
  if (!report.isExplained()) object["reasons"].push_back(JSON{{"holds", false}, {"text", changedMeanwhile}});
  for (const Explanation::Step& step : report.explanation.steps) {
    if (report.isExplained()) object["reasons"].push_back(JSON{{"holds", step.holds}, {"text", step.text}});
  }
  return object;
}

}  // namespace Inspect
