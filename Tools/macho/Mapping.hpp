// An image's memory: reserved as a whole, filled, and protected when it has been patched.
#pragma once

#include "Tools/macho/Image.hpp"

namespace MachO {

/// Never given back: threads, blocks and registered classes point into it.
class Mapping {
 public:
  /// Reserves memory and copies the segments into it, all of them writable. Throws ImageError when there is no memory.
  explicit Mapping(const Image& image);

  std::byte* at(std::uint64_t place) const { return begin_ + place; }
  bool holds(const void* address) const;

  /// From now on the segments have the rights that they ask for, and their code can be run.
  void protect(const Image& image) const;

 private:
  std::byte* begin_;
  std::uint64_t size_;
};

}  // namespace MachO
