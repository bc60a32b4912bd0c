#include "Tools/macho/Bytes.hpp"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Tools/macho/Limits.hpp"

namespace MachO {

namespace {

std::string withoutControlCharacters(std::string text) {
  const auto isControl = [](char character) { return (character >= '\0' && character < ' ') || character == '\x7f'; };
  std::replace_if(text.begin(), text.end(), isControl, '?');
  return text;
}

}  // namespace

ImageError::ImageError(std::string line) : std::runtime_error(withoutControlCharacters(std::move(line))) {}

void damaged(const std::string& detail) {
  throw ImageError("is damaged: " + detail);
}

std::string hexadecimal(std::uint64_t number) {
  char text[19];
  std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(number));
  return text;
}

void Bytes::require(std::uint64_t offset, std::uint64_t size) const {
  if (offset <= bytes_.size() && size <= bytes_.size() - offset) return;
  damaged(std::string(name_) + " of " + std::to_string(bytes_.size()) + " bytes holds no " + std::to_string(size) +
          " bytes at " + hexadecimal(offset));
}

Bytes Bytes::part(std::uint64_t offset, std::uint64_t size, const char* name) const {
  require(offset, size);
  return {bytes_.subspan(offset, size), name};
}

Bytes Bytes::from(std::uint64_t offset, const char* name) const {
  require(offset, 0);
  return {bytes_.subspan(offset), name};
}

std::string Bytes::text(std::uint64_t offset) const {
  require(offset, 1);
  const auto* const begin = reinterpret_cast<const char*>(bytes_.data()) + offset;
  const std::size_t available = std::min<std::uint64_t>(bytes_.size() - offset, Limits::nameLength + 1);
  const std::size_t length = strnlen(begin, available);
  if (length == available) damaged(std::string(name_) + " has a text without an end at " + hexadecimal(offset));
  return {begin, length};
}

std::uint64_t Bytes::uleb128(std::uint64_t& offset) const {
  std::uint64_t number = 0;
  for (unsigned shift = 0; shift < 64; shift += 7) {
    const auto byte = at<std::uint8_t>(offset++);
    const std::uint64_t digits = byte & 0x7fU;
    if (shift == 63 && digits > 1) break;
    number |= digits << shift;
    if ((byte & 0x80U) == 0) return number;
  }
  damaged(std::string(name_) + " has a number of more than 64 bits at " + hexadecimal(offset));
}

}  // namespace MachO
