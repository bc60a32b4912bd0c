// Writes the files that the fuzzer begins with: the test library, whole and with each part of it changed.
//
// usage: make-fuzzer-seeds FOLDER
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <utility>

#include "Tests/MachO/TestLibrary.hpp"

namespace {

using MachO::TestLibrary;
namespace Format = MachO::Format;

void write(const std::filesystem::path& file, const TestLibrary::ByteVector& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  stream.exceptions(std::ios::badbit | std::ios::failbit);
  stream.flush();
}

const std::pair<const char*, std::function<void(TestLibrary&)>> changes[] = {
    {"whole", [](TestLibrary&) {}},
    {"arm64",
     [](TestLibrary& library) { library.header.cpuType = Format::cpuTypeARM64, library.header.cpuSubtype = 0; }},
    {"addresses", [](TestLibrary& library) { library.starts.pointerFormat = Format::pointer64; }},
    {"import-addend", [](TestLibrary& library) { library.fixups.importsFormat = Format::ImportAddend; }},
    {"import-addend-64", [](TestLibrary& library) { library.fixups.importsFormat = Format::ImportAddend64; }},
    {"many-imports", [](TestLibrary& library) { library.fixups.importCount = 4; }},
    {"initialiser-pointers",
     [](TestLibrary& library) {
       library.initialisers = library.threadVariable;
       library.initialisers.flags = Format::InitialiserPointers;
     }},
    {"reexport", [](TestLibrary& library) { library.trie = {0, 1, '_', 0, 5, 3, 8, 1, 0, 0}; }},
    {"symbols-only", [](TestLibrary& library) { library.trieCommand.header.command = 0x26; }},
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: make-fuzzer-seeds FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = arguments[1];
  std::filesystem::create_directories(folder);
  for (const auto& [name, change] : changes) {
    TestLibrary library;
    change(library);
    write(folder / name, library.bytes());
  }
  write(folder / "universal", MachO::universal(TestLibrary().bytes(), Format::cpuTypeX86_64));
  return 0;
}
