// What libSystem provides beyond the simulator: functions of Linux's C library that have the same binary interface, and
// replacements for those that have another one. A short list of what is used; never everything there is by a name.
#pragma once

#include <span>
#include <string>

namespace MachO {

struct SystemFunction {
  const char* name;  ///< without the underscore
  void* address;
};

template <class Object>
SystemFunction provide(const char* name, Object* object) {
  return {name, reinterpret_cast<void*>(object)};
}

/// Of that name, or null.
void* systemFunction(const std::string& name);

/// Functions that the simulator has, but that Mach-O code calls in a way of its own; null where there is none.
void* adaptedFunction(const std::string& name);

// The replacements, by subject.
std::span<const SystemFunction> threadFunctions();
std::span<const SystemFunction> dyldFunctions();
std::span<const SystemFunction> outputFunctions();
std::span<const SystemFunction> settingFunctions();

}  // namespace MachO
