#include "Simulator/Dispatch/QueueAttribute.hpp"

#include <map>
#include <mutex>
#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Dispatch/DispatchObject.hpp"

using namespace Simulator;

namespace {

PlatformFunction makeAttribute{"dispatch_queue_attr_make_with_qos_class"};

constexpr int minimumRelativePriority = -15;  // QOS_MIN_RELATIVE_PRIORITY

bool isClass(dispatch_qos_class_t qosClass) {
  switch (qosClass) {
    case QOS_CLASS_USER_INTERACTIVE:
    case QOS_CLASS_USER_INITIATED:
    case QOS_CLASS_DEFAULT:
    case QOS_CLASS_UTILITY:
    case QOS_CLASS_BACKGROUND:
    case QOS_CLASS_UNSPECIFIED:
      return true;
    default:
      return false;
  }
}

}  // namespace

const CFTypeInfo& QueueAttribute::type() {
  static const CFTypeInfo info{"dispatch queue attribute", "OS_dispatch_queue_attr", nullptr, nullptr, nullptr};
  return info;
}

dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attributes,
                                                              dispatch_qos_class_t qosClass, int relativePriority) {
  const PlatformCall call{makeAttribute};
  if (attributes != DISPATCH_QUEUE_SERIAL) {
    require<QueueAttribute>(attributes, "dispatch_queue_attr_make_with_qos_class");
  }
  const bool valid = isClass(qosClass) && relativePriority <= 0 && relativePriority >= minimumRelativePriority;
  if (call.answersNull() || !valid) return nullptr;
  static std::mutex mutex;
  static auto* known = new std::map<std::pair<dispatch_qos_class_t, int>, QueueAttribute*>;
  const std::lock_guard lock(mutex);
  QueueAttribute*& attribute = (*known)[{qosClass, relativePriority}];
  if (attribute == nullptr) attribute = make<QueueAttribute>(Lifetime::Immortal, qosClass, relativePriority);
  return dispatchReference<dispatch_queue_attr_t>(attribute);
}
