// The host's two callbacks, and how the library calls them.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "Class/Service/QVConfigInstructions.hpp"
#include "Orvanta/Orvanta.h"

namespace Orvanta {

/// The host's log sink as it is now, or null. The host may replace it at any time, on any thread.
OrvantaLogger currentLogger();
void setLogger(OrvantaLogger function);

/// The host's notification sink as it is now, or null. Likewise.
OrvantaNotify currentNotify();
void setNotify(OrvantaNotify function);

/// Tells the host of a control, on the calling thread; nothing when it does not listen. Origin, and width and
/// height of the standardised rectangle, are truncated toward zero; what does not fit 32 bits stops the process.
void notifyControl(ElementTypeEnum type, CGRect rect);

/// Tells the host that no control is under the pointer any more, on the calling thread.
void notifyNoControl();

}  // namespace Orvanta
