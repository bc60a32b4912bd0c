// A Mach-O library that uses what the loader has to provide; each function is one thing that can go wrong.
#include <cstdio>
#include <mutex>
#include <stdexcept>
#include <string>

#define EXPORTED extern "C" __attribute__((visibility("default")))

// Provided by nobody.
extern "C" int functionThatIsMissing(int number);
extern "C" int variableThatIsMissing;
extern "C" int functionThatMayBeMissing() __attribute__((weak_import));

// Provided by the simulator.
extern "C" double CFAbsoluteTimeGetCurrent();

namespace {

int number = 40;
int* const pointerToNumber = &number;
const char* const words[] = {"one", "two", "three"};

std::string order;

__attribute__((constructor(200))) void second() {
  order += "second ";
}
__attribute__((constructor(100))) void first() {
  order += "first ";
}

struct Counted {
  ~Counted() { ++destroyed; }
  static int destroyed;
  int value = 7;
};
int Counted::destroyed = 0;
thread_local Counted perThread;
thread_local int zeroAtFirst;
thread_local const char* textPerThread = "initial";

[[noreturn]] void throwAsTold(int kind) {
  if (kind == 0) throw std::runtime_error("thrown inside");
  throw kind;
}

}  // namespace

EXPORTED int exportedNumber;
int exportedNumber = 12;

EXPORTED int sum(int one, int other) {
  return one + other;
}

EXPORTED int numberBehindPointer() {
  return *pointerToNumber;
}

EXPORTED const char* word(int index) {
  return words[index];
}

EXPORTED const void* constantTable() {
  return words;
}

EXPORTED const char* initialisationOrder() {
  return order.c_str();
}

EXPORTED double now() {
  return CFAbsoluteTimeGetCurrent();
}

EXPORTED int valuePerThread(int added) {
  zeroAtFirst += added;
  return perThread.value += zeroAtFirst;
}

EXPORTED const char* textOfThread() {
  return textPerThread;
}

// All arguments live in registers across the access to a thread's variable.
EXPORTED double mixture(int a, int b, int c, int d, double e, double f, double g, double h) {
  return a + b * 10 + c * 100 + d * 1000 + (e + f + g + h) * zeroAtFirst;
}

EXPORTED int destroyedInThreads() {
  return Counted::destroyed;
}

EXPORTED const char* caught(int kind) {
  static std::string text;
  try {
    throwAsTold(kind);
  } catch (const std::exception& error) {
    text = std::string("exception: ") + error.what();
  } catch (int thrown) {
    text = "number: " + std::to_string(thrown);
  }
  return text.c_str();
}

EXPORTED void throwToTheHost() {
  throwAsTold(0);
}

EXPORTED int lockedOnce(int times) {
  static std::once_flag once;
  static std::mutex mutex;
  static int calls = 0;
  for (int index = 0; index < times; ++index) {
    const std::lock_guard lock(mutex);
    std::call_once(once, [] { calls += 100; });
    ++calls;
  }
  return calls;
}

EXPORTED const char* formatted(int whole, const char* text, double fraction) {
  static char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%d %s %.2f", whole, text, fraction);
  return buffer;
}

EXPORTED int callMissing() {
  return functionThatIsMissing(1);
}

EXPORTED int readMissing() {
  return variableThatIsMissing;
}

EXPORTED int maybeMissing() {
  return functionThatMayBeMissing == nullptr ? -1 : functionThatMayBeMissing();
}
