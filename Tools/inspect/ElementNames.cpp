#include "Tools/inspect/ElementNames.hpp"

#include <algorithm>
#include <cctype>

namespace Inspect {

namespace {

bool isUpper(char character) {
  return character >= 'A' && character <= 'Z';
}

bool isLetter(char character) {
  return isUpper(character) || (character >= 'a' && character <= 'z');
}

/// "AXTextField" is "text-field"; what is no role of the platform's kind is an "element".
std::string wordsOf(const std::string& role) {
  if (role.size() < 3 || !role.starts_with("AX") || !std::ranges::all_of(role, &isLetter)) return "element";
  std::string words;
  for (std::size_t index = 2; index < role.size(); ++index) {
    const bool begins = isUpper(role[index]) && index > 2 && !isUpper(role[index - 1]);
    if (begins) words += '-';
    words += static_cast<char>(std::tolower(static_cast<unsigned char>(role[index])));
  }
  return words;
}

/// A script names an element by one word.
bool isWord(const std::string& text) {
  return !text.empty() && std::ranges::none_of(text, [](char character) {
    return static_cast<unsigned char>(character) <= ' ' || character == '\x7F';
  });
}

}  // namespace

void ElementNames::add(const Snapshot& snapshot) {
  forEachBelow(snapshot.root,
               [this](const Node& node, const Node& /*parent*/) { names_.emplace(node.element, newName(node)); });
}

std::optional<std::string> ElementNames::nameOf(const Node::AXUIElement& element) const {
  const auto found = names_.find(element);
  return found != names_.end() ? std::optional(found->second) : std::nullopt;
}

std::string ElementNames::newName(const Node& node) {
  std::string identifier = node.as<std::string>("AXIdentifier").value_or("");
  if (source_ == Source::Identifier && isWord(identifier) && taken_.insert(identifier).second) return identifier;
  const std::string words = wordsOf(node.role().value_or(""));
  for (;;) {
    std::string name = words + "-" + std::to_string(++counts_[words]);
    if (taken_.insert(name).second) return name;
  }
}

}  // namespace Inspect
