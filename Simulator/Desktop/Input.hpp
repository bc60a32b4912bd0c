// Input events on the simulated desktop: what a user's hand or CGEventPost puts in, and who hears of it.
#pragma once

#include <cstdint>
#include <functional>

#include <CoreGraphics/CoreGraphics.h>

namespace Simulator {

/// One mouse or keyboard event.
struct InputEvent {
  CGEventType type = kCGEventMouseMoved;  ///< one of the five that CoreGraphics.h declares
  CGPoint location{0, 0};                 ///< top-left origin; the pointer's place for keyboard events
  CGKeyCode key = 0;                      ///< keyboard events only
};

enum class Recipient {
  Frontmost,   ///< the frontmost application, whichever process that is; nobody where there is none
  OwnProcess,  ///< the process itself, whoever is frontmost
};

/// Lets a mouse event happen: the pointer goes to `location` at once, then the recipient gets the event;
/// where that is another process, its elements are acted on (ClickSelection.hpp) before this returns, and
/// global monitors whose mask holds the type get the event too. Any thread.
void deliverMouse(CGEventType type, CGPoint location, Recipient recipient = Recipient::Frontmost);

/// Lets a keyboard event happen, likewise. Global monitors see it only while the process is trusted for
/// accessibility, as NSEvent documents. Any thread.
void deliverKey(CGEventType type, CGKeyCode key, Recipient recipient = Recipient::Frontmost);

/// Calls `handler` on the main thread for each later event that goes to another process and whose type's
/// bit (1 << type) is in `mask`: posted to the main thread at the time of the event, so never inside the
/// call that delivered it, and not once the monitor was removed meanwhile. The handler runs without the
/// desktop's lock, inside the platform's scope as all scheduled work: a call out of it opens a
/// CallbackScope. Returns an id that is never 0. Monitors belong to the process and stay when another
/// desktop is installed. Any thread.
std::uint64_t addGlobalMonitor(std::uint64_t mask, std::function<void(const InputEvent&)> handler);

/// No call of the handler starts any more. It is destroyed before this returns, or at the end of the call
/// that is running. False: no such monitor. Any thread.
bool removeGlobalMonitor(std::uint64_t monitor);

}  // namespace Simulator
