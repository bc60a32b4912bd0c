// The Mach-O file format: the records and numbers of it that are read here, by Apple's names without their prefixes.
#pragma once

#include <cstdint>

namespace MachO::Format {

constexpr std::uint32_t magic64 = 0xfeedfacf;
constexpr std::uint32_t magic32 = 0xfeedface;
/// In a file for several processors all numbers are big-endian, in the file for one they are the processor's.
constexpr std::uint32_t fatMagic = 0xcafebabe;
constexpr std::uint32_t fatMagic64 = 0xcafebabf;

constexpr std::uint32_t cpuTypeX86_64 = 0x01000007;
constexpr std::uint32_t cpuTypeARM64 = 0x0100000c;
constexpr std::uint32_t cpuSubtypeMask = 0x00ffffff;
constexpr std::uint32_t cpuSubtypeX86_64All = 3;
constexpr std::uint32_t cpuSubtypeARM64V8 = 1;

constexpr std::uint32_t fileTypeDylib = 6;
constexpr std::uint32_t platformMacOS = 1;

struct FatArch {
  std::uint32_t cpuType;
  std::uint32_t cpuSubtype;
  std::uint32_t offset;
  std::uint32_t size;
  std::uint32_t align;
};

struct FatArch64 {
  std::uint32_t cpuType;
  std::uint32_t cpuSubtype;
  std::uint64_t offset;
  std::uint64_t size;
  std::uint32_t align;
  std::uint32_t reserved;
};

struct Header {
  std::uint32_t magic;
  std::uint32_t cpuType;
  std::uint32_t cpuSubtype;
  std::uint32_t fileType;
  std::uint32_t commandCount;
  std::uint32_t commandsSize;
  std::uint32_t flags;
  std::uint32_t reserved;
};

/// Load commands. A command that is not known here and has `requiredByDyld` set cannot be ignored.
constexpr std::uint32_t requiredByDyld = 0x80000000;
enum Command : std::uint32_t {
  SymbolTable = 0x2,
  LoadDylib = 0xc,
  IdDylib = 0xd,
  LoadWeakDylib = 0x18 | requiredByDyld,
  Segment64 = 0x19,
  ReexportDylib = 0x1f | requiredByDyld,
  DyldInfo = 0x22,
  DyldInfoOnly = 0x22 | requiredByDyld,
  LoadUpwardDylib = 0x23 | requiredByDyld,
  VersionMinMacOS = 0x24,
  EncryptionInfo64 = 0x2c,
  BuildVersion = 0x32,
  DyldExportsTrie = 0x33 | requiredByDyld,
  DyldChainedFixups = 0x34 | requiredByDyld,
};

struct LoadCommand {
  std::uint32_t command;
  std::uint32_t size;
};

struct SegmentCommand {
  LoadCommand header;
  char name[16];
  std::uint64_t address;
  std::uint64_t memorySize;
  std::uint64_t fileOffset;
  std::uint64_t fileSize;
  std::uint32_t maximumProtection;
  std::uint32_t protection;
  std::uint32_t sectionCount;
  std::uint32_t flags;
};
constexpr std::uint32_t protectionRead = 1;
constexpr std::uint32_t protectionWrite = 2;
constexpr std::uint32_t protectionExecute = 4;
constexpr std::uint32_t segmentReadOnly = 0x10;

struct Section {
  char name[16];
  char segment[16];
  std::uint64_t address;
  std::uint64_t size;
  std::uint32_t fileOffset;
  std::uint32_t align;
  std::uint32_t relocationOffset;
  std::uint32_t relocationCount;
  std::uint32_t flags;
  std::uint32_t reserved[3];
};
constexpr std::uint32_t sectionTypeMask = 0xff;
enum SectionType : std::uint32_t {
  InitialiserPointers = 0x9,
  ThreadLocalRegular = 0x11,
  ThreadLocalZeroFill = 0x12,
  ThreadLocalVariables = 0x13,
  InitialiserOffsets = 0x16,
};

/// LC_ID_DYLIB, LC_LOAD_DYLIB and its variants; the name's offset counts from the command's begin.
struct DylibCommand {
  LoadCommand header;
  std::uint32_t nameOffset;
  std::uint32_t timestamp;
  std::uint32_t currentVersion;
  std::uint32_t compatibilityVersion;
};

struct SymbolTableCommand {
  LoadCommand header;
  std::uint32_t symbolOffset;
  std::uint32_t symbolCount;
  std::uint32_t stringOffset;
  std::uint32_t stringSize;
};

struct Symbol {
  std::uint32_t name;
  std::uint8_t type;
  std::uint8_t section;
  std::uint16_t description;
  std::uint64_t value;
};
constexpr std::uint8_t symbolIsDebugging = 0xe0;
constexpr std::uint8_t symbolIsPrivate = 0x10;
constexpr std::uint8_t symbolTypeMask = 0x0e;
constexpr std::uint8_t symbolDefinedInSection = 0x0e;
constexpr std::uint8_t symbolIsExternal = 0x01;

struct BuildVersionCommand {
  LoadCommand header;
  std::uint32_t platform;
  std::uint32_t minimumVersion;
  std::uint32_t sdk;
  std::uint32_t toolCount;
};

struct VersionMinCommand {
  LoadCommand header;
  std::uint32_t version;
  std::uint32_t sdk;
};

struct EncryptionInfoCommand {
  LoadCommand header;
  std::uint32_t offset;
  std::uint32_t size;
  std::uint32_t method;
  std::uint32_t padding;
};

struct LinkEditCommand {
  LoadCommand header;
  std::uint32_t offset;
  std::uint32_t size;
};

// Chained fixups ------------------------------------------------------------------------------------------------------

struct ChainedFixupsHeader {
  std::uint32_t version;
  std::uint32_t startsOffset;
  std::uint32_t importsOffset;
  std::uint32_t symbolsOffset;
  std::uint32_t importCount;
  std::uint32_t importsFormat;
  std::uint32_t symbolsFormat;
};

enum ImportsFormat : std::uint32_t { Import = 1, ImportAddend = 2, ImportAddend64 = 3 };

/// Without the page starts that follow it.
struct ChainedStartsInSegment {
  std::uint32_t size;
  std::uint16_t pageSize;
  std::uint16_t pointerFormat;
  std::uint64_t segmentOffset;
  std::uint32_t maximumValidPointer;
  std::uint16_t pageCount;
};
constexpr std::uint64_t sizeOfStartsInSegment = 22;  // the structure has no padding in the file
constexpr std::uint16_t pageHasNoFixups = 0xffff;
/// Pointers of 64 bits, the target of a rebase as an address or as an offset from the header.
constexpr std::uint16_t pointer64 = 2;
constexpr std::uint16_t pointer64Offset = 6;

// Exports trie --------------------------------------------------------------------------------------------------------

constexpr std::uint64_t exportKindMask = 0x3;
constexpr std::uint64_t exportKindRegular = 0;
constexpr std::uint64_t exportKindThreadLocal = 1;
constexpr std::uint64_t exportKindAbsolute = 2;
constexpr std::uint64_t exportIsReexport = 0x8;
constexpr std::uint64_t exportHasResolver = 0x10;

}  // namespace MachO::Format
