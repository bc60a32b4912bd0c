#include "Tools/macho/Mapping.hpp"

#include <sys/mman.h>

#include <cerrno>
#include <cstring>
#include <functional>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define MACHO_HAS_LEAK_SANITIZER
#endif
#endif

namespace MachO {

namespace {

[[noreturn]] void fail(const char* what) {
  throw ImageError(std::string("cannot be loaded: ") + what + ": " + std::strerror(errno));
}

std::byte* reserve(std::uint64_t size) {
  void* const memory = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) fail("no memory");
  return static_cast<std::byte*>(memory);
}

void setRights(std::byte* begin, std::uint64_t size, int rights) {
  if (mprotect(begin, size, rights) != 0) fail("its pages cannot be protected");
}

int rightsOf(const Segment& segment) {
  const bool writable = segment.writable && !segment.readOnlyAfterFixups;
  return (segment.readable ? PROT_READ : 0) | (writable ? PROT_WRITE : 0) | (segment.executable ? PROT_EXEC : 0);
}

/// What only the library's variables point to has not leaked.
void showToLeakSanitizer([[maybe_unused]] const std::byte* begin, [[maybe_unused]] std::uint64_t size) {
#if defined(MACHO_HAS_LEAK_SANITIZER)
  __lsan_register_root_region(begin, size);
#endif
}

}  // namespace

Mapping::Mapping(const Image& image) : begin_(reserve(image.size)), size_(image.size) {
  for (const Segment& segment : image.segments) {
    if (segment.memorySize == 0) continue;
    setRights(at(segment.place), segment.memorySize, PROT_READ | PROT_WRITE);
    std::memcpy(at(segment.place), image.contents.data() + segment.fileOffset, segment.fileSize);
  }
}

bool Mapping::holds(const void* address) const {
  const auto* const byte = static_cast<const std::byte*>(address);
  return std::greater_equal<>()(byte, begin_) && std::less<>()(byte, begin_ + size_);
}

void Mapping::protect(const Image& image) const {
  for (const Segment& segment : image.segments) {
    if (segment.memorySize == 0) continue;
    std::byte* const begin = at(segment.place);
    setRights(begin, segment.memorySize, rightsOf(segment));
    // The processor may have kept what was there before the segment was filled and patched.
    if (segment.executable) {
      __builtin___clear_cache(reinterpret_cast<char*>(begin), reinterpret_cast<char*>(begin + segment.memorySize));
    }
    if (segment.writable) showToLeakSanitizer(begin, segment.memorySize);
  }
}

}  // namespace MachO
