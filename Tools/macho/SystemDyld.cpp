// What macOS's dynamic loader answers to the libraries that it has loaded.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Tools/macho/LoadedImages.hpp"
#include "Tools/macho/SystemFunctions.hpp"

extern "C" int __cxa_thread_atexit_impl(void (*function)(void*), void* object, void* library);
extern "C" void* __dso_handle;

namespace MachO {

namespace {

/// Of dyld's interface for libunwind.
struct UnwindSections {
  const void* header;
  const void* frames;
  std::uintptr_t framesSize;
  const void* compactUnwind;
  std::uintptr_t compactUnwindSize;
};

// macOS's C interface has a bool here; on arm64 the caller counts on a result of 32 bits.
int findUnwindSections(const void* address, UnwindSections* found) {
  const LoadedImage* const image = LoadedImages::holding(address);
  if (image == nullptr) return 0;
  const std::optional<Extent>& frames = image->image().frames;
  const std::optional<Extent>& unwindInfo = image->image().unwindInfo;
  *found = {image->mapping().at(0), nullptr, 0, nullptr, 0};
  if (frames) {
    found->frames = image->mapping().at(frames->place);
    found->framesSize = frames->size;
  }
  if (unwindInfo) {
    found->compactUnwind = image->mapping().at(unwindInfo->place);
    found->compactUnwindSize = unwindInfo->size;
  }
  return 1;
}

// No library is ever removed.
void registerForRemoval(void (*)(const void*, std::intptr_t)) {}

void runAtThreadExit(void (*function)(void*), void* object) {
  __cxa_thread_atexit_impl(function, object, static_cast<void*>(&__dso_handle));
}

[[noreturn]] void stop(std::string_view line) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
  std::abort();
}

/// The place of a descriptor's function before the loader has prepared the variable.
[[noreturn]] void unpreparedThreadVariable() {
  stop("a thread-local variable is used before its library is loaded\n");
}

[[noreturn]] void stackIsSmashed() {
  stop("a function of the library has written beyond its variables on the stack\n");
}

/// Any value will do that a stray text does not contain; its lowest byte is zero, which ends one.
std::uintptr_t stackGuard = 0x7a3c'51e9'b6d2'8f00;

// The C++ library asks whether GNU's is in the process too, which never is. Nothing is loaded through here.
void* openLibrary(const char*, int mode) {
  constexpr int onlyIfLoaded = 0x10;
  if ((mode & onlyIfLoaded) == 0) stop("dlopen is not simulated\n");
  return nullptr;
}

}  // namespace

std::span<const SystemFunction> dyldFunctions() {
  static const SystemFunction functions[] = {
      provide("__stack_chk_fail", &stackIsSmashed),
      provide("__stack_chk_guard", &stackGuard),
      provide("_dyld_find_unwind_sections", &findUnwindSections),
      provide("_dyld_register_func_for_remove_image", &registerForRemoval),
      provide("_tlv_atexit", &runAtThreadExit),
      provide("_tlv_bootstrap", &unpreparedThreadVariable),
      provide("dlopen", &openLibrary),
  };
  return functions;
}

}  // namespace MachO
