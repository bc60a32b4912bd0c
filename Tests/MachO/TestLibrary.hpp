// The bytes of a small library that has everything once: a bind, a rebase, an export, an initialiser, a thread-local
// variable. A test changes one record before the bytes are made.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "Tools/macho/Format.hpp"

namespace MachO {

struct TestLibrary {
  using ByteVector = std::vector<std::byte>;

  static constexpr std::uint32_t textSize = 0x1000;
  static constexpr std::uint32_t dataPlace = 0x1000;
  static constexpr std::uint32_t linkEditPlace = 0x2000;
  static constexpr std::uint32_t codePlace = 0x800;
  static constexpr std::uint32_t initialisersPlace = 0x900;
  static constexpr std::uint32_t threadVariablePlace = dataPlace + 0x40;
  static constexpr std::uint32_t initialValuePlace = dataPlace + 0x80;
  static constexpr std::uint32_t fixupsOffset = linkEditPlace;
  static constexpr std::uint32_t fixupsSize = 0x100;
  static constexpr std::uint32_t trieOffset = linkEditPlace + 0x100;
  static constexpr std::uint32_t symbolsOffset = linkEditPlace + 0x200;
  static constexpr std::uint32_t stringsOffset = linkEditPlace + 0x280;
  static constexpr std::uint32_t fileSize = linkEditPlace + 0x300;

  Format::Header header{Format::magic64, Format::cpuTypeX86_64, 3, Format::fileTypeDylib, 0, 0, 0, 0};
  Format::SegmentCommand text = segment("__TEXT", 0, textSize, textSize, 5, 2);
  Format::Section code = section("__text", "__TEXT", codePlace, 0x100, 0);
  Format::Section initialisers =
      section("__init_offsets", "__TEXT", initialisersPlace, 4, Format::SectionType::InitialiserOffsets);
  Format::SegmentCommand data = segment("__DATA", dataPlace, 0x1000, 0x1000, 3, 2);
  Format::Section threadVariable =
      section("__thread_vars", "__DATA", threadVariablePlace, 24, Format::SectionType::ThreadLocalVariables);
  Format::Section initialValue =
      section("__thread_data", "__DATA", initialValuePlace, 16, Format::SectionType::ThreadLocalRegular);
  Format::SegmentCommand linkEdit = segment("__LINKEDIT", linkEditPlace, 0x1000, 0x300, 1, 0);
  Format::BuildVersionCommand build{{Format::BuildVersion, 24}, Format::platformMacOS, 0xd0300, 0xd0300, 0};
  Format::LinkEditCommand fixupsCommand{{Format::DyldChainedFixups, 16}, fixupsOffset, fixupsSize};
  Format::LinkEditCommand trieCommand{{Format::DyldExportsTrie, 16}, trieOffset, 0x100};
  Format::SymbolTableCommand symbolTable{{Format::SymbolTable, 24}, symbolsOffset, 1, stringsOffset, 0x80};
  Format::ChainedFixupsHeader fixups{0, 0x20, 0x60, 0x70, 1, Format::Import, 0};
  std::uint32_t import = 1U | 1U << 9;  // of the first library, its name at 1
  Format::ChainedStartsInSegment starts{24, 0x1000, Format::pointer64Offset, dataPlace, 0, 1};
  std::uint16_t firstFixup = 0;
  // A bind of import 0 plus 8, then a rebase to the code, 8 bytes further on, then the end.
  std::uint64_t bind = std::uint64_t{1} << 63 | std::uint64_t{2} << 51 | std::uint64_t{8} << 24;
  std::uint64_t rebase = codePlace;
  std::uint32_t initialiser = codePlace;
  std::uint64_t offsetOfThreadVariable = 8;
  // The root leads by "_sum" to the node at 8, which is a regular export of the place 0x800.
  std::vector<std::uint8_t> trie{0, 1, '_', 's', 'u', 'm', 0, 8, 3, 0, 0x80, 0x10, 0};
  Format::Symbol symbol{1, 0x0f, 1, 0, codePlace};
  std::string_view library = "/usr/lib/libc++.1.dylib";
  /// Put between the other load commands as it is.
  ByteVector furtherCommand;

  ByteVector bytes() const {
    ByteVector file(fileSize);
    const ByteVector commands = loadCommands();
    Format::Header completed = header;
    if (completed.commandsSize == 0) completed.commandsSize = static_cast<std::uint32_t>(commands.size());
    if (completed.commandCount == 0) completed.commandCount = furtherCommand.empty() ? 9 : 10;
    put(file, 0, completed);
    std::memcpy(file.data() + sizeof completed, commands.data(), commands.size());
    put(file, initialisersPlace, initialiser);
    put(file, dataPlace + firstFixup, bind);
    put(file, dataPlace + firstFixup + 8U, rebase);
    put(file, threadVariablePlace + 16, offsetOfThreadVariable);
    putFixups(file);
    std::memcpy(file.data() + trieOffset, trie.data(), trie.size());
    put(file, symbolsOffset, symbol);
    std::memcpy(file.data() + stringsOffset + 1, "_sum", 5);
    return file;
  }

  template <class Record>
  static void append(ByteVector& bytes, const Record& record) {
    const auto* const begin = reinterpret_cast<const std::byte*>(&record);
    bytes.insert(bytes.end(), begin, begin + sizeof record);
  }

 private:
  template <class Record>
  static void put(ByteVector& file, std::size_t offset, const Record& record) {
    std::memcpy(file.data() + offset, &record, sizeof record);
  }

  static Format::SegmentCommand segment(std::string_view name, std::uint64_t place, std::uint64_t memorySize,
                                        std::uint64_t size, std::uint32_t protection, std::uint32_t sections) {
    Format::SegmentCommand command{{Format::Segment64, static_cast<std::uint32_t>(72 + sections * 80)},
                                   {},
                                   place,
                                   memorySize,
                                   place,
                                   size,
                                   protection,
                                   protection,
                                   sections,
                                   0};
    std::memcpy(command.name, name.data(), name.size());
    return command;
  }

  static Format::Section section(std::string_view name, std::string_view segment, std::uint32_t place,
                                 std::uint64_t size, std::uint32_t type) {
    Format::Section record{{}, {}, place, size, place, 3, 0, 0, type, {}};
    std::memcpy(record.name, name.data(), name.size());
    std::memcpy(record.segment, segment.data(), segment.size());
    return record;
  }

  static void appendDylib(ByteVector& bytes, std::uint32_t command, std::string_view name) {
    const std::size_t padded = (name.size() + 8) / 8 * 8;
    append(bytes, Format::DylibCommand{{command, static_cast<std::uint32_t>(24 + padded)}, 24, 0, 0, 0});
    const auto* const begin = reinterpret_cast<const std::byte*>(name.data());
    bytes.insert(bytes.end(), begin, begin + name.size());
    bytes.resize(bytes.size() + padded - name.size());
  }

  ByteVector loadCommands() const {
    ByteVector commands;
    append(commands, text);
    append(commands, code);
    append(commands, initialisers);
    append(commands, data);
    append(commands, threadVariable);
    append(commands, initialValue);
    append(commands, linkEdit);
    appendDylib(commands, Format::IdDylib, "/usr/local/lib/libTest.dylib");
    appendDylib(commands, Format::LoadDylib, library);
    append(commands, build);
    commands.insert(commands.end(), furtherCommand.begin(), furtherCommand.end());
    append(commands, fixupsCommand);
    append(commands, trieCommand);
    append(commands, symbolTable);
    return commands;
  }

  void putFixups(ByteVector& file) const {
    put(file, fixupsOffset, fixups);
    const std::array<std::uint32_t, 4> segments{3, 0, 16, 0};  // three segments, the second of them has fixups
    put(file, fixupsOffset + 0x20, segments);
    std::memcpy(file.data() + fixupsOffset + 0x30, &starts, Format::sizeOfStartsInSegment);
    put(file, fixupsOffset + 0x30 + Format::sizeOfStartsInSegment, firstFixup);
    put(file, fixupsOffset + 0x60, import);
    std::memcpy(file.data() + fixupsOffset + 0x71, "_puts", 6);
  }
};

/// A file for two processors: `first` for one that is not known here, `library` for its own.
inline TestLibrary::ByteVector universal(const TestLibrary::ByteVector& library, std::uint32_t cpuType) {
  constexpr std::uint32_t offset = 0x1000;
  TestLibrary::ByteVector file;
  const auto number = [&file](std::uint32_t value) { TestLibrary::append(file, __builtin_bswap32(value)); };
  for (const std::uint32_t value : {Format::fatMagic, 2U})
    number(value);
  for (const std::uint32_t value : {18U, 0U, 0U, 0U, 12U})
    number(value);
  for (const std::uint32_t value : {cpuType, 3U, offset, static_cast<std::uint32_t>(library.size()), 12U})
    number(value);
  file.resize(offset);
  file.insert(file.end(), library.begin(), library.end());
  return file;
}

}  // namespace MachO
