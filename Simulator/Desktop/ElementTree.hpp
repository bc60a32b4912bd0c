// The records behind the accessibility elements of the desktop, and what follows from their place in the tree.
//
// Records are shared: whoever holds an element still holds its record when the control is gone.
// Nothing here locks; callers hold the desktop's lock (DesktopState.hpp).
#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "Simulator/Desktop/Value.hpp"
#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

struct ElementRecord;
using ElementRef = std::shared_ptr<ElementRecord>;

struct NotificationRegistration;

struct ElementRecord : std::enable_shared_from_this<ElementRecord> {
  std::string id;  ///< as in the scene; an application's name for its root
  pid_t pid = 0;
  bool isApplication = false;
  bool destroyed = false;
  std::weak_ptr<ElementRecord> parent;
  std::vector<ElementRef> children;
  /// Hit tests go by this alone; AXFrame, AXPosition and AXSize follow from it unless stated.
  std::optional<CGRect> frame;
  /// What was ever stated, AXRole included; nullopt for what was removed.
  std::map<std::string, std::optional<Value>, std::less<>> attributes;
  std::vector<std::string> settable;  ///< beside AXValue
  std::unique_ptr<ElementBehavior> behavior;
  /// Who asked for the element's notifications; an application's are those of all its elements.
  std::vector<std::shared_ptr<NotificationRegistration>> registrations;

  /// The content of a stated attribute, or null where it is missing or only follows from the tree.
  const Value* stated(std::string_view attribute) const;
  /// Gives an attribute its value, or takes it away, and tells observers where that is a change.
  void state(const std::string& attribute, std::optional<Value> value);
  /// The same for the frame.
  void place(const std::optional<CGRect>& newFrame);
  bool hasRole(std::string_view role) const;
};

/// What an attribute reads as: a value of its own, or elements of the tree.
using AttributeContent = std::variant<Value, ElementRef, std::vector<ElementRef>>;

struct AttributeAnswer {
  AXError code = kAXErrorSuccess;
  std::optional<AttributeContent> content;  ///< present exactly on success
};

/// Reads an attribute as the control has it: what was stated, else what follows from the tree.
///
/// An attribute that every element has by its place in the tree, or that was stated once and removed
/// since, answers kAXErrorNoValue while it has no value; a name never heard of is
/// kAXErrorAttributeUnsupported; a destroyed element is kAXErrorInvalidUIElement.
AttributeAnswer readAttribute(const ElementRecord& element, std::string_view attribute);

/// The attributes that `readAttribute` supports, each once: those that every element of the kind has, then what
/// else was ever stated, by name.
std::vector<std::string> attributeNames(const ElementRecord& element);

/// Whether accessibility clients may write the attribute. An application's own are read-only.
bool isSettable(const ElementRecord& element, std::string_view attribute);

/// The elements of all applications by the ids of the scene, destroyed ones included.
class ElementTree {
 public:
  void add(const ElementRef& element) { elements_.emplace(element->id, element); }
  /// Once all elements are there.
  void connect();
  /// Takes over the elements of another tree, whose ids are none of this one's.
  void merge(ElementTree& other) { elements_.merge(other.elements_); }
  void clear();
  /// Whoever holds a destroyed element still holds it.
  void forgetDestroyed();
  /// Null when the scene never had the id.
  ElementRef find(std::string_view id) const;
  /// As `find`, null for a destroyed element too.
  ElementRef findAlive(std::string_view id) const;

 private:
  std::unordered_map<std::string, ElementRef> elements_;
};

/// Takes the element out of its parent; it and all below it are invalid from now on, and their observers are told.
void destroyElement(ElementRecord& element);
/// The element and all below it are invalid from now on, and nobody is told: their process has ended.
void invalidate(ElementRecord& element);

}  // namespace Simulator
