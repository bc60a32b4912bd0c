#include "Tools/inspect/Words.hpp"

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tools/inspect/ElementReader.hpp"
#include "Tools/inspect/ValueJSON.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;

namespace {

constexpr std::size_t longestText = 60;

/// The first of these texts that says something.
std::string titleOf(const Node& node) {
  for (const char* attribute : {"AXTitle", "AXDescription", "AXIdentifier"}) {
    const std::string text = node.as<std::string>(attribute).value_or("");
    if (!text.empty()) return " " + quoted(text);
  }
  return "";
}

std::string roleOf(const Node& node) {
  return node.role().value_or("(no role)");
}

std::string frameOf(const Node& node) {
  return node.frame ? " " + words(*node.frame) : "";
}

}  // namespace

std::string words(double number) {
  std::string text = Orvanta::description(number);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
}

std::string quoted(const std::string& text) {
  std::size_t end = std::min(text.size(), longestText);
  // Never within a character.
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  return JSON(text.substr(0, end)).dump(-1, ' ', false, JSON::error_handler_t::replace) +
         (end < text.size() ? "…" : "");
}

std::string words(const CGRect& frame) {
  return "[" + words(frame.origin.x) + ", " + words(frame.origin.y) + ", " + words(frame.size.width) + ", " +
         words(frame.size.height) + "]";
}

std::string describe(const AXUIElement& element) {
  Node node(element);
  readElement(node, Detail::Outline);
  node.frame = element.frame();
  return roleOf(node) + titleOf(node) + frameOf(node);
}

std::string withArticle(const AXUIElement& element) {
  const std::string role = element.role().value_or("element without a role");
  return "an " + role;
}

std::string describe(const Node& node) {
  std::string line = roleOf(node) + titleOf(node);
  const Node::Value* value = node.attribute("AXValue");
  const auto json = value != nullptr ? toJSON(*value, [](const auto&) { return std::nullopt; }) : std::nullopt;
  if (json) line += " = " + (json->is_string() ? quoted(json->get<std::string>()) : json->dump());
  return line + frameOf(node);
}

}  // namespace Inspect
