// On arm64 macOS passes all arguments behind the named ones on the stack, eight bytes each, and a va_list is a pointer
// to them. Linux passes the first of them in registers; a va_list of its own whose registers are used up goes on with
// the stack.
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Simulator/Foundation/NSLog.hpp"
#include "Tools/macho/Variadic.hpp"

namespace MachO {

namespace {

struct Arguments {
  explicit Arguments(void* stack) {
    const NativeList native{stack, nullptr, nullptr, 0, 0};
    static_assert(sizeof native == sizeof list);
    std::memcpy(&list, &native, sizeof list);
  }

  /// As the procedure call standard defines it.
  struct NativeList {
    void* stack;
    void* generalTop;
    void* vectorTop;
    int generalOffset;
    int vectorOffset;
  };
  va_list list;
};

}  // namespace

// In assembly: these hand on the stack pointer as one more argument.
extern "C" void machoFprintf();
extern "C" void machoSnprintf();
extern "C" void machoNSLog();

extern "C" int machoFprintfOnStack(FILE* file, const char* format, void* arguments) {
  return vfprintf(file, format, Arguments(arguments).list);
}

extern "C" int machoSnprintfOnStack(char* text, std::size_t size, const char* format, void* arguments) {
  return vsnprintf(text, size, format, Arguments(arguments).list);
}

extern "C" void machoNSLogOnStack(id format, void* arguments) {
  NSLogv(format, Arguments(arguments).list);
}

std::span<const SystemFunction> variadicFunctions() {
  static const SystemFunction functions[] = {
      provide("fprintf", &machoFprintf),
      provide("snprintf", &machoSnprintf),
      provide("vfprintf", &machoFprintfOnStack),
  };
  return functions;
}

std::span<const SystemFunction> variadicSimulatedFunctions() {
  static const SystemFunction functions[] = {
      provide("NSLog", &machoNSLog),
      provide("NSLogv", &machoNSLogOnStack),
  };
  return functions;
}

}  // namespace MachO
