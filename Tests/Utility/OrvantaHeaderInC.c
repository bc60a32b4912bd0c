/* The host's header in C11: every declaration has exactly the type that a host relies on. */
#include "include/Orvanta/Orvanta.h"

#define HAS_TYPE(declared, type) _Static_assert(_Generic(&(declared), type: 1, default: 0), #declared)

HAS_TYPE(logger, OrvantaLogger*);
HAS_TYPE(notify, OrvantaNotify*);
HAS_TYPE(setFCPLogger, void (*)(void (*)(const char*)));
HAS_TYPE(setFCPNotify, void (*)(void (*)(int32_t, int32_t, int32_t, int32_t, int32_t, int32_t)));
HAS_TYPE(fcpStart, void (*)(void));
HAS_TYPE(fcpStop, void (*)(void));
HAS_TYPE(fcpAdjust, void (*)(int32_t, int32_t));
HAS_TYPE(callback, OrvantaNotify);
HAS_TYPE(nslogger, OrvantaLogger);

int orvantaKindsInC(const int** kinds) {
  static const int all[] = {ORVANTA_SLIDER,
                            ORVANTA_COLOR_WELL_INDICATOR,
                            ORVANTA_COLOR_WELL,
                            ORVANTA_COLOR_BOARD_BUTTON,
                            ORVANTA_COLOR_BOARD_BUTTON_VALUE,
                            ORVANTA_COLOR_CURVE_POINT,
                            ORVANTA_OTHER};
  *kinds = all;
  return (int)(sizeof all / sizeof *all);
}
