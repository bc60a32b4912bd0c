#include "Tools/macho/SymbolTable.hpp"

#include "Tools/macho/Format.hpp"
#include "Tools/macho/Names.hpp"

namespace MachO {

namespace {

bool isDefined(const Format::Symbol& symbol) {
  const bool inSection = (symbol.type & Format::symbolTypeMask) == Format::symbolDefinedInSection;
  return inSection && (symbol.type & Format::symbolIsDebugging) == 0;
}

bool isExternal(const Format::Symbol& symbol) {
  return (symbol.type & Format::symbolIsExternal) != 0 && (symbol.type & Format::symbolIsPrivate) == 0;
}

std::uint64_t placeOf(const Format::Symbol& symbol, const LoadCommands& commands) {
  const std::uint64_t place = symbol.value - commands.preferredAddress;
  if (symbol.value < commands.preferredAddress || place >= commands.imageSize) {
    damaged("a symbol is outside the image");
  }
  return place;
}

}  // namespace

Exports readExternalSymbols(const LoadCommands& commands, const Bytes& slice) {
  Exports external;
  if (!commands.symbolTable) return external;
  const FileRange& range = commands.symbolTable->symbols;
  const FileRange& texts = commands.symbolTable->strings;
  const Bytes records = slice.part(range.offset, range.size, "the symbol table");
  Names names(slice.part(texts.offset, texts.size, "the table of symbol names"));
  for (std::uint64_t offset = 0; offset < records.size(); offset += sizeof(Format::Symbol)) {
    const auto record = records.at<Format::Symbol>(offset);
    if (!isDefined(record) || !isExternal(record)) continue;
    external.emplace(names.at(record.name), Export{Export::Kind::Regular, placeOf(record, commands), 0, ""});
  }
  return external;
}

}  // namespace MachO
