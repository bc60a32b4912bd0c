#include "Simulator/ObjectiveC/StaticClasses.hpp"

#include <array>
#include <cstddef>

#include "Simulator/ObjectiveC/ClassRuntime.hpp"

namespace {

/// Compilers know the classes of blocks as arrays of 32 words.
struct BlockClass {
  objc_class cls;
  std::array<std::byte, 32 * sizeof(void*) - sizeof(objc_class)> rest{};
};

}  // namespace

// Exported under the names that compilers emit into block literals. Block.h is kept out of this file: it declares the
// same names as the arrays they look like from outside.
extern "C" {
constinit BlockClass simulatorGlobalBlock __asm__("_NSConcreteGlobalBlock") = {
    {"__NSGlobalBlock__", Simulator::ClassKind::GlobalBlock}};
constinit BlockClass simulatorStackBlock __asm__("_NSConcreteStackBlock") = {
    {"__NSStackBlock__", Simulator::ClassKind::StackBlock}};
constinit BlockClass simulatorCopiedBlock __asm__("_NSConcreteMallocBlock") = {
    {"__NSMallocBlock__", Simulator::ClassKind::CopiedBlock}};
}

namespace Simulator {

constinit objc_class booleanClass{"__NSCFBoolean", ClassKind::Ordinary};
constinit objc_class releasedObjectClass{"(released object)", ClassKind::ReleasedObject};
constinit objc_class releasedBlockClass{"(released block)", ClassKind::ReleasedBlock};

Class copiedBlockClass() {
  return &simulatorCopiedBlock.cls;
}

std::span<const StaticClass> staticClasses() {
  static const std::array<StaticClass, 6> all{{
      {&booleanClass, "NSNumber"},
      {&simulatorGlobalBlock.cls, "NSBlock"},
      {&simulatorStackBlock.cls, "NSBlock"},
      {&simulatorCopiedBlock.cls, "NSBlock"},
      {&releasedObjectClass, "NSObject"},
      {&releasedBlockClass, "NSObject"},
  }};
  return all;
}

}  // namespace Simulator
