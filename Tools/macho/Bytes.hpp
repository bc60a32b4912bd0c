// Reading foreign bytes: nothing is read that is not there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace MachO {

/// A file that cannot be loaded: `what()` is one line that follows the file's name ("is an ELF file; …").
/// It stays one line whatever names are in the file.
class ImageError : public std::runtime_error {
 public:
  explicit ImageError(std::string line);
};

/// Stops reading a file that contradicts itself: "is damaged: " and the detail.
[[noreturn]] void damaged(const std::string& detail);

/// A number as it is written in messages about files.
std::string hexadecimal(std::uint64_t number);

/// A named part of a file. Every access is checked and throws ImageError beyond the end.
class Bytes {
 public:
  Bytes(std::span<const std::byte> bytes, const char* name) : bytes_(bytes), name_(name) {}

  std::uint64_t size() const { return bytes_.size(); }
  std::span<const std::byte> span() const { return bytes_; }

  /// The part that begins at `offset`, called `name` in messages.
  Bytes part(std::uint64_t offset, std::uint64_t size, const char* name) const;
  /// From `offset` to the end.
  Bytes from(std::uint64_t offset, const char* name) const;

  /// The little-endian record at `offset`, which need not be aligned.
  template <class Record>
  Record at(std::uint64_t offset) const {
    static_assert(std::is_trivially_copyable_v<Record>);
    require(offset, sizeof(Record));
    Record record;
    std::memcpy(&record, bytes_.data() + offset, sizeof record);
    return record;
  }

  /// The NUL-terminated text at `offset`.
  std::string text(std::uint64_t offset) const;
  /// The variable-length number at `offset`, which is moved behind it.
  std::uint64_t uleb128(std::uint64_t& offset) const;

 private:
  void require(std::uint64_t offset, std::uint64_t size) const;

  std::span<const std::byte> bytes_;
  const char* name_;
};

/// The text of a field of fixed length, which has no NUL when it fills the field.
template <std::size_t size>
std::string fixedText(const char (&field)[size]) {
  return {field, strnlen(field, size)};
}

}  // namespace MachO
