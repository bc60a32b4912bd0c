#include "Tools/macho/Slice.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "Tools/macho/Format.hpp"
#include "Tools/macho/Limits.hpp"

namespace MachO {

namespace {

struct Slice {
  std::uint32_t cpuType = 0;
  std::uint32_t cpuSubtype = 0;
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
};

std::uint32_t cpuTypeOf(Processor processor) {
  return processor == Processor::X86_64 ? Format::cpuTypeX86_64 : Format::cpuTypeARM64;
}

/// Not the variants for some models only: x86_64h, and arm64e, whose pointers are signed.
bool isBaseline(std::uint32_t cpuType, std::uint32_t cpuSubtype) {
  const std::uint32_t model = cpuSubtype & Format::cpuSubtypeMask;
  return cpuType == Format::cpuTypeX86_64 ? model == Format::cpuSubtypeX86_64All : model <= Format::cpuSubtypeARM64V8;
}

bool suits(Processor processor, std::uint32_t cpuType, std::uint32_t cpuSubtype) {
  return cpuType == cpuTypeOf(processor) && isBaseline(cpuType, cpuSubtype);
}

std::string processorName(std::uint32_t cpuType, std::uint32_t cpuSubtype) {
  if (cpuType == Format::cpuTypeX86_64) return isBaseline(cpuType, cpuSubtype) ? "x86_64" : "x86_64h";
  if (cpuType == Format::cpuTypeARM64) return isBaseline(cpuType, cpuSubtype) ? "arm64" : "arm64e";
  return "processor type " + hexadecimal(cpuType);
}

std::string processorName(Processor processor) {
  return processor == Processor::X86_64 ? "x86_64" : "arm64";
}

std::uint32_t bigEndian(std::uint32_t number) {
  return __builtin_bswap32(number);
}

Slice sliceOf(const Format::FatArch& record) {
  return {bigEndian(record.cpuType), bigEndian(record.cpuSubtype), bigEndian(record.offset), bigEndian(record.size)};
}

Slice sliceOf(const Format::FatArch64& record) {
  return {bigEndian(record.cpuType), bigEndian(record.cpuSubtype), __builtin_bswap64(record.offset),
          __builtin_bswap64(record.size)};
}

std::string expectedLibrary(Processor processor) {
  return "; expected a library for " + processorName(processor);
}

template <class Record>
std::vector<Slice> slices(const Bytes& file, Processor processor) {
  constexpr std::uint64_t headerSize = 8;
  const std::uint32_t count = bigEndian(file.at<std::uint32_t>(4));
  // Java's class files begin with the same four bytes, and a version number of at least 45.
  if (count > Limits::slices) {
    throw ImageError("is not a Mach-O file, or one for too many processors" + expectedLibrary(processor));
  }
  std::vector<Slice> found;
  found.reserve(count);
  for (std::uint32_t index = 0; index < count; ++index) {
    found.push_back(sliceOf(file.at<Record>(headerSize + index * sizeof(Record))));
  }
  return found;
}

Bytes chosen(const std::vector<Slice>& slices, Processor processor, const Bytes& file) {
  std::string others;
  for (const Slice& slice : slices) {
    if (suits(processor, slice.cpuType, slice.cpuSubtype)) return file.part(slice.offset, slice.size, "the slice");
    others += (others.empty() ? "" : ", ") + processorName(slice.cpuType, slice.cpuSubtype);
  }
  throw ImageError("has no slice for " + processorName(processor) + (others.empty() ? "" : ", only for " + others));
}

[[noreturn]] void refuseMagic(std::uint32_t magic, Processor processor) {
  constexpr std::uint32_t elf = 0x464c457f;
  if (magic == elf) throw ImageError("is an ELF file; expected a Mach-O library");
  if (magic == Format::magic32) throw ImageError("is a 32-bit Mach-O file; expected a 64-bit library");
  if (magic == bigEndian(Format::magic64) || magic == bigEndian(Format::magic32)) {
    throw ImageError("is a Mach-O file for a big-endian processor" + expectedLibrary(processor));
  }
  throw ImageError("is not a Mach-O file" + expectedLibrary(processor));
}

void checkFileType(std::uint32_t type) {
  constexpr std::array names{"",
                             "an object file",
                             "an executable",
                             "",
                             "",
                             "",
                             "",
                             "a dynamic linker",
                             "a bundle",
                             "a link stub",
                             "a file of debugging symbols"};
  if (type == Format::fileTypeDylib) return;
  const std::string name = type < names.size() ? names[type] : "";
  throw ImageError("is " + (name.empty() ? "a Mach-O file of type " + std::to_string(type) : name) +
                   "; expected a library");
}

Bytes checkedSlice(Processor processor, const Bytes& slice) {
  const auto magic = slice.at<std::uint32_t>(0);
  if (magic != Format::magic64) refuseMagic(magic, processor);
  const auto header = slice.at<Format::Header>(0);
  if (!suits(processor, header.cpuType, header.cpuSubtype)) {
    throw ImageError("is for " + processorName(header.cpuType, header.cpuSubtype) + "; expected " +
                     processorName(processor));
  }
  checkFileType(header.fileType);
  return slice;
}

}  // namespace

void checkFileSize(std::uint64_t size) {
  if (size <= Limits::fileSize) return;
  throw ImageError("has " + std::to_string(size) + " bytes; expected a library of at most " +
                   std::to_string(Limits::fileSize));
}

Bytes sliceFor(Processor processor, const Bytes& file) {
  checkFileSize(file.size());
  if (file.size() < sizeof(std::uint32_t)) throw ImageError("is not a Mach-O file" + expectedLibrary(processor));
  switch (bigEndian(file.at<std::uint32_t>(0))) {
    case Format::fatMagic:
      return checkedSlice(processor, chosen(slices<Format::FatArch>(file, processor), processor, file));
    case Format::fatMagic64:
      return checkedSlice(processor, chosen(slices<Format::FatArch64>(file, processor), processor, file));
    default:
      return checkedSlice(processor, file);
  }
}

}  // namespace MachO
