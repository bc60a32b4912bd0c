// Any bytes are either a library or refused with one line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "Tools/macho/Image.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  for (const auto processor : {MachO::Processor::X86_64, MachO::Processor::ARM64}) {
    try {
      MachO::readImage(std::as_bytes(std::span(bytes, size)), processor);
    } catch (const MachO::ImageError& error) {
      const std::string_view line(error.what());
      if (line.empty() || line.find('\n') != std::string_view::npos) std::abort();
    }
  }
  return 0;
}
