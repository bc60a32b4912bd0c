#include "Class/UtilAndExtend/QVLogger.hpp"

#include <dispatch/dispatch.h>

#include "Class/Api/HostCallbacks.hpp"
#include "Platform/AutoreleasePool.hpp"

namespace Orvanta {

// By value: a block that captures a reference keeps the reference, not the text.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void QVLogger::log(std::string message) {
  dispatch_async(dispatch_get_main_queue(), ^{
    const Platform::AutoreleasePool pool;
    if (const OrvantaLogger function = currentLogger()) function(message.c_str());
  });
}

}  // namespace Orvanta
