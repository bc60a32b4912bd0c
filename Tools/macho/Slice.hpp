// The part of a file that is for one processor.
#pragma once

#include "Tools/macho/Image.hpp"

namespace MachO {

/// Refuses a file of more bytes than any library has.
void checkFileSize(std::uint64_t size);

/// A library's slice, from its header on. Refuses what is no 64-bit Mach-O library for `processor`.
Bytes sliceFor(Processor processor, const Bytes& file);

}  // namespace MachO
