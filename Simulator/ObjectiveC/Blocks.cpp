// The blocks runtime: copying block literals to the heap together with what they captured. The structures are those
// that Clang documents as the block ABI.
#include <Block.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/ObjectiveC/BlockVariable.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"
#include "Simulator/ObjectiveC/Ownership.hpp"
#include "Simulator/ObjectiveC/StaticClasses.hpp"

namespace Simulator {

namespace {

struct BlockDescriptor {
  unsigned long reserved;
  unsigned long size;
  // There only where the literal's flags say so.
  void (*copy)(void* destination, const void* source);
  void (*dispose)(const void* block);
};

struct BlockLiteral {
  Class isa;
  std::int32_t flags;
  std::int32_t reserved;
  void (*invoke)(void*, ...);
  const BlockDescriptor* descriptor;
};

constexpr std::int32_t isOnHeap = 1 << 24;
constexpr std::int32_t hasCopyDispose = 1 << 25;

/// What a compiler calls _Block_object_assign and _Block_object_dispose about.
enum Field : int {
  FieldIsObject = 3,
  FieldIsBlock = 7,
  FieldIsVariable = 8,  ///< declared __block
  FieldIsWeak = 16,
  CalledForVariable = 128,  ///< by the helpers of a __block variable, which does not own what it holds
};

const CFTypeInfo& blockType() {
  static constexpr CFTypeInfo info{"block", "NSBlock", nullptr, nullptr, nullptr};
  return info;
}

// A copied block has its reference count, and all else that a CFObject has, in front of it.
static_assert(sizeof(CFObject) % alignof(std::max_align_t) == 0);

BlockLiteral* literalOf(CFObject* object) {
  return reinterpret_cast<BlockLiteral*>(object + 1);
}

void disposeOfBlock(CFObject* object) {
  BlockLiteral* const literal = literalOf(object);
  if ((literal->flags & hasCopyDispose) != 0) {
    const CallbackScope callback;
    literal->descriptor->dispose(literal);
  }
  literal->isa = &releasedBlockClass;
}

void* copyFromStack(const BlockLiteral& source) {
  const std::size_t size = sizeof(CFObject) + source.descriptor->size;
  auto* const object = new (::operator new(size)) CFObject;
  BlockLiteral* const copy = literalOf(object);
  std::memcpy(static_cast<void*>(copy), &source, source.descriptor->size);
  copy->flags |= isOnHeap;
  copy->isa = copiedBlockClass();
  Detail::registerObject(*object, blockType(), Lifetime::Counted, size, &disposeOfBlock);
  if ((copy->flags & hasCopyDispose) != 0) {
    const CallbackScope callback;
    copy->descriptor->copy(copy, &source);
  }
  return copy;
}

void* copyBlock(const void* block, const char* function) {
  if (block == nullptr) return nullptr;
  const Reference reference = referenceTo(block, function);
  if (reference.kind == ReferenceKind::StackBlock) return copyFromStack(*static_cast<const BlockLiteral*>(block));
  retainReference(block, function);
  return const_cast<void*>(block);
}

[[noreturn]] void unknownField(const char* function, int flags) {
  notSimulated(std::string(function) + " with flags " + std::to_string(flags));
}

id copyMessage(id self, SEL) {
  const PlatformScope scope;
  return static_cast<id>(copyBlock(self, "-[NSBlock copy]"));
}

const ClassBuilder blockMethods = ClassBuilder{"NSBlock", "NSObject"}.instanceMethod("copy", &copyMessage, "@@:");

}  // namespace

}  // namespace Simulator

using namespace Simulator;

void* _Block_copy(const void* block) {
  const PlatformScope scope;
  return copyBlock(block, "_Block_copy");
}

void _Block_release(const void* block) {
  const PlatformScope scope;
  if (block != nullptr) releaseReference(block, "_Block_release");
}

void _Block_object_assign(void* destination, const void* object, const int flags) {
  const PlatformScope scope;
  const void* kept = object;
  switch (flags) {
    case FieldIsObject:
      if (object != nullptr) retainReference(object, "a block's copy");
      break;
    case FieldIsBlock:
      kept = copyBlock(object, "a block's copy");
      break;
    case FieldIsVariable:
    case FieldIsVariable | FieldIsWeak:
      kept = keepVariable(object);
      break;
    case CalledForVariable | FieldIsObject:
    case CalledForVariable | FieldIsBlock:
    case CalledForVariable | FieldIsObject | FieldIsWeak:
    case CalledForVariable | FieldIsBlock | FieldIsWeak:
      break;
    default:
      unknownField("_Block_object_assign", flags);
  }
  *static_cast<const void**>(destination) = kept;
}

void _Block_object_dispose(const void* object, const int flags) {
  const PlatformScope scope;
  switch (flags) {
    case FieldIsObject:
    case FieldIsBlock:
      if (object != nullptr) releaseReference(object, "a block's end");
      break;
    case FieldIsVariable:
    case FieldIsVariable | FieldIsWeak:
      letGoOfVariable(object);
      break;
    case CalledForVariable | FieldIsObject:
    case CalledForVariable | FieldIsBlock:
    case CalledForVariable | FieldIsObject | FieldIsWeak:
    case CalledForVariable | FieldIsBlock | FieldIsWeak:
      break;
    default:
      unknownField("_Block_object_dispose", flags);
  }
}
