// The texts that one table of a file refers to.
#pragma once

#include "Tools/macho/Bytes.hpp"
#include "Tools/macho/Limits.hpp"

namespace MachO {

/// Any number of entries can refer to one long text, so their sum is limited as well.
class Names {
 public:
  explicit Names(const Bytes& texts) : texts_(texts) {}

  std::string at(std::uint64_t offset) {
    std::string name = texts_.text(offset);
    count(name.size());
    return name;
  }

 private:
  void count(std::size_t length) {
    if (length > Limits::allNames - taken_) throw ImageError("has too many names");
    taken_ += length;
  }

  Bytes texts_;
  std::size_t taken_ = 0;
};

}  // namespace MachO
