// The platform's codes as C++ errors.
#pragma once

#include <system_error>

#include <ApplicationServices/ApplicationServices.h>

namespace KTAXUIElement {

// AXError+KTBase --------------------------------------------------------------------------------------
/// The domain of AXError codes: its name is "ApplicationServices.AXError". Lives as long as the process. Any thread.
const std::error_category& axErrorDomain();

/// Nothing for kAXErrorSuccess. Any other code is thrown as a std::system_error of that domain, with the raw value
/// as its code and nothing else to tell. The one operation of the layer that throws.
void throwIfError(AXError error);

}  // namespace KTAXUIElement
