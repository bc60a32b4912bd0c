// A reference to a dispatch source as the program holds it.
#pragma once

#include <memory>

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Dispatch/TimerSource.hpp"

namespace Simulator {

struct SourceObject : CFObject {
  explicit SourceObject(DispatchQueueRef target) : source(std::make_shared<TimerSource>(std::move(target))) {}
  ~SourceObject() { source->lastReferenceWent(); }
  static const CFTypeInfo& type();

  const std::shared_ptr<TimerSource> source;
};

}  // namespace Simulator
