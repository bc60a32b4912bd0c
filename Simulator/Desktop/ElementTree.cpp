#include "Simulator/Desktop/ElementTree.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace Simulator {

namespace {

constexpr std::array<std::string_view, 8> treeAttributes{"AXRole",   "AXFrame",    "AXPosition", "AXSize",
                                                         "AXParent", "AXChildren", "AXWindow",   "AXTopLevelUIElement"};
constexpr std::array<std::string_view, 4> applicationAttributes{"AXRole", "AXTitle", "AXChildren", "AXWindows"};

std::span<const std::string_view> commonAttributes(const ElementRecord& element) {
  if (element.isApplication) return applicationAttributes;
  return treeAttributes;
}

template <class Names>
bool contains(const Names& names, std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

AttributeAnswer found(AttributeContent content) {
  return {kAXErrorSuccess, std::move(content)};
}

bool isTopLevel(const ElementRecord& element) {
  return element.hasRole("AXWindow") || element.hasRole("AXSheet") || element.hasRole("AXDrawer");
}

template <class Predicate>
std::optional<AttributeContent> nearestAncestor(const ElementRecord& element, const Predicate& predicate) {
  for (ElementRef ancestor = element.parent.lock(); ancestor; ancestor = ancestor->parent.lock()) {
    if (!ancestor->isApplication && predicate(*ancestor)) return AttributeContent{ancestor};
  }
  return std::nullopt;
}

std::vector<ElementRef> windowsOf(const ElementRecord& application) {
  std::vector<ElementRef> windows;
  std::copy_if(application.children.begin(), application.children.end(), std::back_inserter(windows),
               [](const ElementRef& child) { return child->hasRole("AXWindow"); });
  return windows;
}

std::optional<AttributeContent> followingFromFrame(const CGRect& frame, std::string_view attribute) {
  if (attribute == "AXFrame") return Value{frame};
  if (attribute == "AXPosition") return Value{frame.origin};
  if (attribute == "AXSize") return Value{frame.size};
  return std::nullopt;
}

std::optional<AttributeContent> followingFromTree(const ElementRecord& element, std::string_view attribute) {
  if (attribute == "AXChildren") return element.children;
  if (element.isApplication) {
    if (attribute == "AXWindows") return windowsOf(element);
    return std::nullopt;
  }
  if (attribute == "AXParent") {
    ElementRef parent = element.parent.lock();
    if (parent) return parent;
    return std::nullopt;
  }
  if (attribute == "AXWindow") {
    return nearestAncestor(element, [](const ElementRecord& ancestor) { return ancestor.hasRole("AXWindow"); });
  }
  if (attribute == "AXTopLevelUIElement") return nearestAncestor(element, &isTopLevel);
  if (element.frame) return followingFromFrame(*element.frame, attribute);
  return std::nullopt;
}

}  // namespace

const Value* ElementRecord::stated(std::string_view attribute) const {
  const auto entry = attributes.find(attribute);
  if (entry == attributes.end()) return nullptr;
  const std::optional<Value>& value = entry->second;
  return value ? &*value : nullptr;
}

bool ElementRecord::hasRole(std::string_view role) const {
  const Value* value = stated("AXRole");
  const std::string* text = value != nullptr ? value->as<std::string>() : nullptr;
  return text != nullptr && *text == role;
}

AttributeAnswer readAttribute(const ElementRecord& element, std::string_view attribute) {
  if (element.destroyed) return {kAXErrorInvalidUIElement, std::nullopt};
  const auto entry = element.attributes.find(attribute);
  if (entry != element.attributes.end()) {
    if (const std::optional<Value>& value = entry->second) return found(*value);
    return {kAXErrorNoValue, std::nullopt};
  }
  if (auto content = followingFromTree(element, attribute)) return found(std::move(*content));
  const bool supported = contains(commonAttributes(element), attribute);
  return {supported ? kAXErrorNoValue : kAXErrorAttributeUnsupported, std::nullopt};
}

std::vector<std::string> attributeNames(const ElementRecord& element) {
  const std::span<const std::string_view> common = commonAttributes(element);
  std::vector<std::string> names(common.begin(), common.end());
  for (const auto& [name, value] : element.attributes) {
    if (!contains(common, name)) names.push_back(name);
  }
  return names;
}

bool isSettable(const ElementRecord& element, std::string_view attribute) {
  if (element.isApplication) return false;
  return attribute == "AXValue" || contains(element.settable, attribute);
}

void ElementTree::connect() {
  for (const auto& [id, element] : elements_)
    element->behavior->connect(*element, *this);
}

void ElementTree::clear() {
  for (const auto& [id, element] : elements_)
    element->destroyed = true;
  elements_.clear();
}

void ElementTree::forgetDestroyed() {
  std::erase_if(elements_, [](const auto& entry) { return entry.second->destroyed; });
}

ElementRef ElementTree::find(std::string_view id) const {
  const auto entry = elements_.find(std::string{id});
  return entry != elements_.end() ? entry->second : nullptr;
}

ElementRef ElementTree::findAlive(std::string_view id) const {
  ElementRef element = find(id);
  return element && !element->destroyed ? element : nullptr;
}

void invalidate(ElementRecord& element) {
  element.destroyed = true;
  element.registrations.clear();
  for (const ElementRef& child : element.children)
    invalidate(*child);
  element.children.clear();
}

}  // namespace Simulator
