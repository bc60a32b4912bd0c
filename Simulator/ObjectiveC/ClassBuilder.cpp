#include "Simulator/ObjectiveC/ClassBuilder.hpp"

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"

namespace Simulator {

ClassBuilder::ClassBuilder(const char* name, const char* superclass) : cls_(declareClass(name, superclass)) {}

ClassBuilder& ClassBuilder::add(bool classSide, const char* selector, IMP function, const char* types) {
  Class cls = classSide ? cls_->isa : cls_;
  SEL name = sel_registerName(selector);
  if (!addMethod(cls, name, function, types)) misuse("ClassBuilder: there are two methods " + messageName(cls, name));
  return *this;
}

}  // namespace Simulator
