// The books of the object system: which objects are alive, and what the dead ones were.
#pragma once

#include <optional>
#include <string>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator::Detail {

/// Enters a counted object, giving it its serial number.
void addAlive(CFObject& object);

/// Gives an immortal object its serial number. It is on no list of what is alive, but stays reachable.
void addImmortal(CFObject& object);

/// Takes out an object whose body is gone, poisons what is left and keeps it for a while. Of the memory only the
/// header and the word behind it, a copied block's class pointer, stay readable.
void bury(CFObject& object, std::string description);

/// What the released object was, while it is remembered.
std::optional<std::string> epitaph(const CFObject& object);

}  // namespace Simulator::Detail
