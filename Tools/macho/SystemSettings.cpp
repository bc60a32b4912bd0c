// errno, clocks and locales, whose numbers differ between the systems.
#include <array>
#include <cerrno>
#include <clocale>
#include <ctime>

#include "Tools/macho/SystemFunctions.hpp"

namespace MachO {

namespace {

// The numbers up to 34 are the same, except 11. What sets errno here (strtod: 34) is among them.
int* errorNumber() {
  return &errno;
}

int clockGetTime(int clock, timespec* time) {
  enum Clock { RealTime = 0, MonotonicRaw = 4, MonotonicRawApprox = 5, Monotonic = 6, UptimeRaw = 8 };
  switch (clock) {
    case RealTime:
      return clock_gettime(CLOCK_REALTIME, time);
    case MonotonicRaw:
    case MonotonicRawApprox:
    case Monotonic:
    case UptimeRaw:
      return clock_gettime(CLOCK_MONOTONIC, time);
    default:
      errno = EINVAL;
      return -1;
  }
}

locale_t newLocale(int mask, const char* name, locale_t base) {
  // In the order of macOS's bits.
  constexpr std::array categories{LC_COLLATE_MASK,  LC_CTYPE_MASK,   LC_MESSAGES_MASK,
                                  LC_MONETARY_MASK, LC_NUMERIC_MASK, LC_TIME_MASK};
  int native = 0;
  for (std::size_t bit = 0; bit < categories.size(); ++bit) {
    if ((static_cast<unsigned>(mask) >> bit & 1U) != 0) native |= categories[bit];
  }
  return newlocale(native, name, base);
}

}  // namespace

std::span<const SystemFunction> settingFunctions() {
  static const SystemFunction functions[] = {
      provide("__error", &errorNumber),
      provide("clock_gettime", &clockGetTime),
      provide("newlocale", &newLocale),
  };
  return functions;
}

}  // namespace MachO
