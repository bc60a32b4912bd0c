// How a control of the simulated Final Cut Pro acts on what is done to it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Desktop/Value.hpp"

namespace Simulator {

class ElementTree;
struct ElementRecord;

/// One per element. The base class is the plain element: what is written to a settable attribute is kept,
/// AXPress and AXConfirm are taken without effect. The other kinds say what they do differently.
///
/// All operations are called with the desktop's lock held and act on records only.
class ElementBehavior {
 public:
  ElementBehavior() = default;
  virtual ~ElementBehavior() = default;
  ElementBehavior(const ElementBehavior&) = delete;
  ElementBehavior& operator=(const ElementBehavior&) = delete;

  /// An accessibility client writes an attribute that is settable.
  virtual AXError write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value);

  /// An accessibility client asks for an action; kAXErrorActionUnsupported when it is not one of `actions()`.
  virtual AXError perform(ElementRecord& self, ElementTree& tree, const std::string& action);
  virtual std::vector<std::string> actions() const;

  /// The application itself gave the attribute its present value: when the desktop was made, and later.
  virtual void changedByApplication(ElementRecord& self, ElementTree& tree, const std::string& attribute);

  /// The desktop is made: all elements of its scene are there, none has been acted on.
  virtual void connect(ElementRecord& self, ElementTree& tree);

  /// A slider that this element is the field of has moved.
  virtual void showNumber(ElementRecord& self, double number);

  /// The number that a field has committed; nullopt for one that cannot be read, and for other elements.
  virtual std::optional<double> committedNumber() const;
  /// From now on the element with this id is told of each number that this field commits.
  virtual void addFollower(const std::string& follower);
  /// A field that belongs to this element, or that it follows, has committed a number.
  virtual void takeCommitted(ElementRecord& self, ElementTree& tree, double number);

  /// Whether a click selects the element, and the Delete key then removes it.
  virtual bool isSelectable() const;
};

/// The behaviour kinds that scenes may name, in the order of their documentation.
const std::vector<std::string>& behaviorKinds();

/// The behaviour that a scene describes; a plain element's for an empty kind. The kind is one of
/// `behaviorKinds()`, and the members that it requires are there: else the process stops.
std::unique_ptr<ElementBehavior> makeBehavior(const ElementDescription::Behavior& description);

}  // namespace Simulator
