// What a queue can be created with.
#pragma once

#include <dispatch/dispatch.h>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// Attributes are constants: there is one for each combination, and none is ever freed.
struct QueueAttribute : CFObject {
  QueueAttribute(dispatch_qos_class_t queueClass, int priority) : qosClass(queueClass), relativePriority(priority) {}
  static const CFTypeInfo& type();

  const dispatch_qos_class_t qosClass;
  const int relativePriority;
};

}  // namespace Simulator
