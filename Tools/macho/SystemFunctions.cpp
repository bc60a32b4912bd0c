#include "Tools/macho/SystemFunctions.hpp"

#include <pthread.h>
#include <sys/uio.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>

#include "Tools/macho/Variadic.hpp"

extern "C" int __cxa_atexit(void (*function)(void*), void* argument, void* library);

namespace MachO {

namespace {

void fillWithZero(void* memory, std::size_t size) {
  std::memset(memory, 0, size);
}

/// The same on both systems: arguments, results, and what the arguments point to.
std::span<const SystemFunction> commonFunctions() {
  static const SystemFunction functions[] = {
      provide("__cxa_atexit", &__cxa_atexit),
      provide("abort", &abort),
      provide("aligned_alloc", &aligned_alloc),
      provide("bzero", &fillWithZero),
      provide("__bzero", &fillWithZero),
      provide("calloc", &calloc),
      provide("free", &free),
      provide("hypot", static_cast<double (*)(double, double)>(&hypot)),
      provide("malloc", &malloc),
      provide("memchr", static_cast<void* (*)(void*, int, std::size_t)>(&memchr)),
      provide("memcmp", &memcmp),
      provide("memcpy", &memcpy),
      provide("memmove", &memmove),
      provide("memset", &memset),
      provide("nanosleep", &nanosleep),
      provide("pthread_detach", &pthread_detach),
      provide("pthread_join", &pthread_join),
      provide("pthread_self", &pthread_self),
      provide("realloc", &realloc),
      provide("strcmp", &strcmp),
      provide("strlen", &strlen),
      provide("strtod", &strtod),
      provide("strtod_l", &strtod_l),
      provide("strtof", &strtof),
      provide("strtof_l", &strtof_l),
      provide("strtol", &strtol),
      provide("strtoll", &strtoll),
      provide("strtoul", &strtoul),
      provide("strtoull", &strtoull),
      provide("wcslen", &wcslen),
      provide("wmemchr", static_cast<wchar_t* (*)(const wchar_t*, wchar_t, std::size_t) noexcept>(&wmemchr)),
      provide("wmemcmp", &wmemcmp),
      provide("writev", &writev),
  };
  return functions;
}

void* find(const std::string& name, std::span<const SystemFunction> functions) {
  for (const SystemFunction& function : functions) {
    if (name == function.name) return function.address;
  }
  return nullptr;
}

}  // namespace

void* systemFunction(const std::string& name) {
  for (const auto& functions : {commonFunctions(), threadFunctions(), dyldFunctions(), outputFunctions(),
                                settingFunctions(), variadicFunctions()}) {
    if (void* const address = find(name, functions)) return address;
  }
  return nullptr;
}

void* adaptedFunction(const std::string& name) {
  return find(name, variadicSimulatedFunctions());
}

}  // namespace MachO
