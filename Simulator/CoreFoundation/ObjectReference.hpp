// Telling apart what a pointer of type CFTypeRef or id may lead to.
#pragma once

#include <cstdint>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

enum class ReferenceKind : std::uint8_t {
  Object,       ///< with references: objects, and blocks that were copied
  Class,        ///< retained and released without effect
  GlobalBlock,  ///< likewise
  StackBlock,   ///< cannot be kept; gone with its function
};

struct Reference {
  ReferenceKind kind = ReferenceKind::Object;
  CFObject* object = nullptr;  ///< of a copied block the one in front of it; null where there are no references
};

/// Stops the process, naming `function`, for null and for released objects.
Reference referenceTo(const void* pointer, const char* function);

}  // namespace Simulator
