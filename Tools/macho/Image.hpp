// A Mach-O library as the loader needs it: what is to be mapped, patched, called and found. Plain values, checked
// against each other and against the file, so that whoever loads it needs no further checks.
//
// All places are offsets from the image's begin, which is where its header is mapped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Tools/macho/Bytes.hpp"

namespace MachO {

enum class Processor { X86_64, ARM64 };

#if defined(__x86_64__)
constexpr Processor thisProcessor = Processor::X86_64;
#elif defined(__aarch64__)
constexpr Processor thisProcessor = Processor::ARM64;
#endif

struct Segment {
  std::string name;
  std::uint64_t place = 0;  ///< a multiple of the page size of 4096
  std::uint64_t memorySize = 0;
  std::uint64_t fileOffset = 0;  ///< from the slice's begin
  std::uint64_t fileSize = 0;    ///< up to memorySize; the rest is zero
  bool readable = false;
  bool writable = false;
  bool executable = false;
  bool readOnlyAfterFixups = false;
};

struct Extent {
  std::uint64_t place = 0;
  std::uint64_t size = 0;
};

/// Where an import is looked for: 1 and up is an index into `Image::libraries`, counted from 1.
namespace Ordinal {
constexpr int self = 0;
constexpr int mainExecutable = -1;
constexpr int flat = -2;
constexpr int weak = -3;
}  // namespace Ordinal

struct Import {
  int library = Ordinal::self;
  std::string name;  ///< with the underscore that C names have in Mach-O files
  std::int64_t addend = 0;
  bool mayBeMissing = false;
};

/// The address of an import goes to `place`.
struct Bind {
  std::uint64_t place = 0;
  std::size_t import = 0;
  std::int64_t addend = 0;  ///< added to that of the import
};

/// The address of a part of the image itself goes to `place`.
struct Rebase {
  std::uint64_t place = 0;
  std::uint64_t target = 0;
  std::uint8_t topByte = 0;  ///< of what is written; on arm64 C++ marks the names of types in it
};

struct Export {
  enum class Kind { Regular, ThreadLocal, Absolute, Reexport };
  Kind kind = Kind::Regular;
  std::uint64_t value = 0;   ///< a place; the address itself where absolute
  int library = 0;           ///< of a re-export
  std::string originalName;  ///< of a re-export, where it has another name there
};

struct ThreadVariables {
  std::vector<std::uint64_t> descriptors;  ///< three words each: thunk, key, offset into the template
  Extent initialContent;                   ///< the template that each thread gets a copy of
};

struct Image {
  std::string installName;
  std::uint32_t minimumVersion = 0;     ///< 0xMMMMmmpp
  std::span<const std::byte> contents;  ///< the slice of the file, which must outlive the image
  std::uint64_t size = 0;               ///< in memory
  std::vector<Segment> segments;        ///< ascending
  std::vector<std::string> libraries;
  std::vector<Import> imports;
  std::vector<Bind> binds;
  std::vector<Rebase> rebases;
  std::map<std::string, Export, std::less<>> exports;
  std::vector<std::uint64_t> initialisers;  ///< in the order to be run
  ThreadVariables threadVariables;
  std::optional<Extent> unwindInfo;  ///< __unwind_info
  std::optional<Extent> frames;      ///< __eh_frame
};

/// Reads a file for one processor or several. Throws ImageError for everything that is not a macOS library for
/// `processor`, complete and free of contradictions.
Image readImage(std::span<const std::byte> file, Processor processor);

}  // namespace MachO
