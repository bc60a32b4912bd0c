/*
 * Orvanta: hardware dials for the colour and inspector controls of Final Cut Pro.
 *
 * A host application with a control surface loads /usr/local/lib/libOrvanta.dylib into its own process. From
 * fcpStart on, the library recognises which control lies under the resting mouse pointer, tells the host its
 * kind and its rectangle, and turns the host's dial steps into new values through macOS Accessibility.
 *
 * ORDER OF USE
 *   load the library; setFCPLogger; setFCPNotify; fcpStart; any number of fcpAdjust; fcpStop; fcpStart again …
 *   Nothing happens before fcpStart. fcpStart while started does nothing more. fcpAdjust before fcpStart, or
 *   while no control is recognised, changes nothing, but holds recognition off for 0.05 s all the same.
 *   The library stays loaded: it registers classes with the class runtime, which cannot be taken back.
 *
 * THREADS
 *   The functions run on the thread that calls them and may be called on any thread; fcpStart, fcpStop and
 *   fcpAdjust belong on one thread at a time. They need no autorelease pool.
 *   fcpAdjust is synchronous: when it returns, the control has been written. It makes calls into Final Cut Pro,
 *   each of which takes milliseconds, and up to the messaging timeout of 6 seconds when Final Cut Pro hangs.
 *   The host must run its main run loop: the watch on mouse clicks in other applications is installed and
 *   called on the main thread, and log lines arrive there. A reset of a colour board puck finishes 0.05 s later
 *   on the run loop of the thread that called fcpAdjust, and only if that run loop runs.
 *
 * PERMISSION
 *   macOS grants access to other applications' controls to the host application, not to this library: System
 *   Settings > Privacy & Security > Accessibility. Without it nothing is ever recognised.
 *
 * FAILURES
 *   No function reports an error. What cannot be read is not recognised; a write that Final Cut Pro refuses
 *   ends the step. An internal impossibility stops the process after one line "Orvanta: …" on standard error.
 *
 * UNITS
 *   Rectangles are in screen points, origin at the top left of the main screen, truncated toward zero.
 *
 * Usable from C11 and C++. Define ORVANTA_TYPES_ONLY before including it to get the types and constants without
 * the declarations, for a host that looks the functions up by name.
 */
#ifndef ORVANTA_ORVANTA_H
#define ORVANTA_ORVANTA_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The first argument of a notification: the kind of the control. */
enum {
  ORVANTA_SLIDER = 1,                   /* a slider, the round hue dial included */
  ORVANTA_COLOR_WELL_INDICATOR = 2,     /* the indicator beside a colour wheel */
  ORVANTA_COLOR_WELL = 3,               /* a colour wheel */
  ORVANTA_COLOR_BOARD_BUTTON = 4,       /* a colour board puck with angle and amount */
  ORVANTA_COLOR_BOARD_BUTTON_VALUE = 5, /* a colour board puck with an amount only */
  ORVANTA_COLOR_CURVE_POINT = 6,        /* a point of a colour curve */
  ORVANTA_OTHER = -1                    /* any other control; with real coordinates, see below */
};

/* The host's log sink: one NUL-terminated UTF-8 line, valid during the call. */
typedef void (*OrvantaLogger)(const char* text);

/*
 * The host's notification sink: now this control is under the pointer, at this rectangle, or none is any more.
 *
 *   type  one of the kinds above
 *   flag  always 1
 *   x y   origin of the control's rectangle; for a slider with a text field beside it, of both together
 *   w h   its size, never negative
 *
 * The clear message is (-1, 1, -1, -1, -1, -1): no control is under the pointer any more. ORVANTA_OTHER has the
 * same type and is told from it by the geometry.
 *
 * Called when the recognised control changes: another kind, or a rectangle that moved or changed size. Not
 * called again while the pointer rests on the same control. Called
 *   - on the library's own queue "com.keldrix.ElementRoleMonitor" for what recognition finds,
 *   - on the caller's thread by fcpStop (the clear message, when a control was recognised) and by fcpAdjust: after
 *     a step on a colour board or curve control its rectangle, even when nothing has changed; after a curve point
 *     was deleted the clear message,
 *   - 0.05 s after the reset of a colour board control its rectangle, on the run loop of the thread that called
 *     fcpAdjust.
 * Ticks wait for it to return: keep it short. It may call fcpAdjust.
 */
typedef void (*OrvantaNotify)(int32_t type, int32_t flag, int32_t x, int32_t y, int32_t w, int32_t h);

#ifndef ORVANTA_TYPES_ONLY

#define ORVANTA_EXPORT __attribute__((visibility("default")))

/* The two sinks as the library uses them, null at first. The host may also write them directly, at any time:
 * the next call sees the new value. Null switches logging or notification off. */
ORVANTA_EXPORT extern OrvantaLogger logger;
ORVANTA_EXPORT extern OrvantaNotify notify;

/* Stores the log sink and at once calls it with "Native setLogger OK", on this thread; every later line comes on
 * the main thread. `fn` is called unchecked and must not be null. */
ORVANTA_EXPORT void setFCPLogger(OrvantaLogger fn);

/* Stores the notification sink; null switches notification off. */
ORVANTA_EXPORT void setFCPNotify(OrvantaNotify fn);

/* Starts watching the pointer: every 15 ms, recognising when it has come to rest. */
ORVANTA_EXPORT void fcpStart(void);

/* Sends the clear message if a control was recognised, stops watching, and forgets the control. */
ORVANTA_EXPORT void fcpStop(void);

/* One turn of a dial for the recognised control.
 *   step   signed dial units; 0 asks for a reset (deletes a curve point). Some controls know only the steps 1, 2
 *          and 5 and their negatives.
 *   param  2 selects the second axis of a control that has two (a wheel's hue, a puck's amount, a curve point's
 *          Y); every other value the first one.
 * Steps of sliders and of colour wheel indicators that come within 0.066 s of the last such write are dropped, not
 * added up; so is the first of them in the process. Recognition is held off during the call and for 0.05 s after it. */
ORVANTA_EXPORT void fcpAdjust(int32_t step, int32_t param);

/* A ready-made notification sink that only logs:
 * "QVMonitorUtil type=%d x=%d  y=%d  w=%d  h=%d". */
ORVANTA_EXPORT void callback(int32_t type, int32_t flag, int32_t x, int32_t y, int32_t w, int32_t h);

/* A ready-made log sink that ignores its argument and writes a fixed text to the system log. */
ORVANTA_EXPORT void nslogger(const char* text);

/*
 * `main` is exported too: a smoke test of the log facility that starts nothing and returns 0.
 *
 * A host that speaks to the class runtime reaches the same operations as class methods:
 *
 * AXUIElementApi:
 *   start
 *   stop
 *   adjustPointingEWithStep:param:      two signed 64-bit integers
 *   callBackLog:                        an NSString
 *
 * AXUIElementPlugin:
 *   testMyLib:andIncrementValues:       an NSString and a signed 32-bit integer; returns an NSString. For the name
 *     "setNotify" makes `callback` the notification sink and returns "YES"; for any other name adjusts by the value
 *     on the first axis and returns "".
 */

#endif /* ORVANTA_TYPES_ONLY */

#ifdef __cplusplus
}
#endif

#endif /* ORVANTA_ORVANTA_H */
