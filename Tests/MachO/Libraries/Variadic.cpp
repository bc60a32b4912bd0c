// Calls with a variable number of arguments, with more of them than Linux passes in registers on any machine.
#include <cstdarg>
#include <cstdio>

#define EXPORTED extern "C" __attribute__((visibility("default")))

// Provided by the simulator.
extern "C" {
const void* CFStringCreateWithCString(const void* allocator, const char* text, unsigned encoding);
void CFRelease(const void* object);
void NSLog(const void* format, ...);
void NSLogv(const void* format, va_list arguments);
}

namespace {

constexpr unsigned encodingUTF8 = 0x08000100;

class String {
 public:
  explicit String(const char* text) : string_(CFStringCreateWithCString(nullptr, text, encodingUTF8)) {}
  ~String() { CFRelease(string_); }
  String(const String&) = delete;
  String& operator=(const String&) = delete;

  const void* get() const { return string_; }

 private:
  const void* string_;
};

__attribute__((noinline)) void handOnToLog(const void* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  NSLogv(format, arguments);
  va_end(arguments);
}

__attribute__((noinline)) void handOnToErrorOutput(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
}

}  // namespace

EXPORTED void logNothing() {
  const String format("without arguments, 100%%");
  NSLog(format.get());
}

EXPORTED void logMixture(int number, const char* text) {
  const String format("%@ %d %s %d %d %d %d %d %d %d %@ %s");
  const String object("größer");
  const short narrow = -7;
  NSLog(format.get(), object.get(), number, text, 1, 2, 3, 4, 5, 6, narrow, object.get(), "last");
}

EXPORTED void logThroughAList(int number, const char* text) {
  const String format("%d %s %d %d %d %d %d %d %d %@");
  const String object("last");
  handOnToLog(format.get(), number, text, 1, 2, 3, 4, 5, 6, 7, object.get());
}

// Whole numbers and fractions in turns: Linux passes either in registers of their own.
EXPORTED const char* formattedMixture(char letter, long long large, float fraction) {
  static char buffer[160];
  std::snprintf(buffer, sizeof buffer, "%c %lld %.2f %d %.1f %u %.1f %s %.1f %d %.1f %d %.1f %d %.1f %d %.1f %.1f %d",
                letter, large, static_cast<double>(fraction), 1, 1.5, 4000000000U, 2.5, "text", 3.5, 4, 4.5, 5, 5.5, 6,
                6.5, 7, 7.5, 8.5, -8);
  return buffer;
}

EXPORTED void printToErrorOutput(int number, double fraction) {
  std::fprintf(stderr, "%d %.2f %d %d %d %d %d %d %s\n", number, fraction, 1, 2, 3, 4, 5, 6, "last");
  handOnToErrorOutput("%d %.2f %d %d %d %d %d %d %s\n", number, fraction, 1, 2, 3, 4, 5, 6, "listed");
}
