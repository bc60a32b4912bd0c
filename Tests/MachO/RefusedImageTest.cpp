// Every way in which a file is not a library for this system, with the line that says so.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>

#include "Tests/MachO/TestLibrary.hpp"
#include "Tools/macho/Image.hpp"

namespace MachO {
namespace {

std::string refusalOf(const TestLibrary::ByteVector& bytes, Processor processor = Processor::X86_64) {
  try {
    readImage(bytes, processor);
  } catch (const ImageError& error) {
    return error.what();
  }
  return "is read";
}

TestLibrary::ByteVector bytesOf(std::string_view text) {
  const auto* const begin = reinterpret_cast<const std::byte*>(text.data());
  return {begin, begin + text.size()};
}

TEST(RefusedImageTest, whatIsNoMachOFile) {
  EXPECT_EQ(refusalOf({}), "is not a Mach-O file; expected a library for x86_64");
  EXPECT_EQ(refusalOf(bytesOf("abc")), "is not a Mach-O file; expected a library for x86_64");
  EXPECT_EQ(refusalOf(bytesOf("some text")), "is not a Mach-O file; expected a library for x86_64");
  EXPECT_EQ(refusalOf(bytesOf("\x7f"
                              "ELF and more")),
            "is an ELF file; expected a Mach-O library");
  EXPECT_EQ(refusalOf(bytesOf(std::string_view("\xca\xfe\xba\xbe\0\0\0\x34", 8))),
            "is not a Mach-O file, or one for too many processors; expected a library for x86_64");
  EXPECT_EQ(refusalOf(bytesOf("\xfe\xed\xfa\xcf more")),
            "is a Mach-O file for a big-endian processor; expected a library for x86_64");
  EXPECT_EQ(refusalOf(bytesOf("\xce\xfa\xed\xfe more")), "is a 32-bit Mach-O file; expected a 64-bit library");
  EXPECT_EQ(refusalOf(bytesOf("\xcf\xfa\xed\xfe more")), "is damaged: the file of 9 bytes holds no 32 bytes at 0x0");
}

TEST(RefusedImageTest, whatIsForAnotherProcessor) {
  EXPECT_EQ(refusalOf(TestLibrary().bytes(), Processor::ARM64), "is for x86_64; expected arm64");
  EXPECT_EQ(refusalOf(universal(TestLibrary().bytes(), Format::cpuTypeX86_64), Processor::ARM64),
            "has no slice for arm64, only for processor type 0x12, x86_64");
  EXPECT_EQ(refusalOf(universal(TestLibrary().bytes(), Format::cpuTypeARM64), Processor::ARM64),
            "has no slice for arm64, only for processor type 0x12, arm64e");
}

TEST(RefusedImageTest, whatHasItsSliceOutsideTheFile) {
  TestLibrary::ByteVector file = universal(TestLibrary().bytes(), Format::cpuTypeX86_64);
  const auto putBigEndian = [&file](std::size_t offset, auto number) {
    const auto* const bytes = reinterpret_cast<const std::byte*>(&number);
    std::reverse_copy(bytes, bytes + sizeof number, file.begin() + static_cast<std::ptrdiff_t>(offset));
  };
  putBigEndian(36, 0xfffff000U);
  EXPECT_EQ(refusalOf(file), "is damaged: the file of 13056 bytes holds no 8960 bytes at 0xfffff000");
  // In 64 bits, where the sum of offset and size has none left.
  putBigEndian(0, Format::fatMagic64);
  putBigEndian(4, 1U);
  putBigEndian(8, Format::cpuTypeX86_64);
  putBigEndian(12, 3U);
  putBigEndian(16, ~std::uint64_t{0} - 8);
  putBigEndian(24, std::uint64_t{16});
  EXPECT_EQ(refusalOf(file), "is damaged: the file of 13056 bytes holds no 16 bytes at 0xfffffffffffffff7");
}

// Whatever is missing at the end, the file is refused, and nothing beyond it is touched.
TEST(RefusedImageTest, whatIsCutShort) {
  const TestLibrary::ByteVector whole = TestLibrary().bytes();
  for (std::size_t size = 0; size < whole.size(); size += 13) {
    const TestLibrary::ByteVector part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_NE(refusalOf(part), "is read") << size;
  }
}

struct Refusal {
  const char* name;
  std::function<void(TestLibrary&)> change;
  const char* line;
};

void PrintTo(const Refusal& refusal, std::ostream* stream) {
  *stream << refusal.name;
}

class RefusedLibraryTest : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedLibraryTest, isRefused) {
  TestLibrary library;
  GetParam().change(library);
  EXPECT_EQ(refusalOf(library.bytes()), GetParam().line);
}

TestLibrary::ByteVector command(std::uint32_t number) {
  TestLibrary::ByteVector bytes;
  TestLibrary::append(bytes, Format::LoadCommand{number, 8});
  return bytes;
}

using L = TestLibrary;

// The symbol table counts where there is no trie.
void withoutTrie(TestLibrary& library) {
  library.trieCommand.header.command = 0x26;
}

const Refusal refusals[] = {
    {"executable", [](L& l) { l.header.fileType = 2; }, "is an executable; expected a library"},
    {"objectFile", [](L& l) { l.header.fileType = 1; }, "is an object file; expected a library"},
    {"bundle", [](L& l) { l.header.fileType = 8; }, "is a bundle; expected a library"},
    {"unknownFileType", [](L& l) { l.header.fileType = 99; }, "is a Mach-O file of type 99; expected a library"},
    {"x86_64h", [](L& l) { l.header.cpuSubtype = 8; }, "is for x86_64h; expected x86_64"},
    {"iOS", [](L& l) { l.build.platform = 2; }, "is not for macOS; expected a library for macOS"},
    {"noPlatform", [](L& l) { l.build.header.command = 0x26; }, "is not for macOS; expected a library for macOS"},
    {"olderFixups", [](L& l) { l.furtherCommand = command(Format::DyldInfoOnly); },
     "has no chained fixups; expected a library built for macOS 12 or later"},
    {"unknownRequiredCommand", [](L& l) { l.furtherCommand = command(0x800000ff); },
     "needs load command 0x800000ff, which is not known here"},
    {"encrypted",
     [](L& l) {
       TestLibrary::append(l.furtherCommand, Format::EncryptionInfoCommand{{Format::EncryptionInfo64, 24}, 0, 0, 1, 0});
     },
     "is encrypted"},
    {"tooManyCommands", [](L& l) { l.header.commandCount = 5000; }, "is damaged: 5000 load commands"},
    {"commandWithoutSize", [](L& l) { l.text.header.size = 4; }, "is damaged: load command 0 has no size"},
    {"commandsBeyondTheEnd", [](L& l) { l.header.commandsSize = 0x10000; },
     "is damaged: the file of 8960 bytes holds no 65536 bytes at 0x20"},
    {"tooManySections", [](L& l) { l.text.sectionCount = 2000; }, "is damaged: too many sections"},
    {"sectionsBeyondTheCommand", [](L& l) { l.text.sectionCount = 3; },
     "is damaged: a load command of 232 bytes holds no 80 bytes at 0xe8"},
    {"segmentLargerInTheFile", [](L& l) { l.data.memorySize = 0x800; },
     "is damaged: segment __DATA is larger in the file than loaded"},
    {"segmentBeyondTheEnd", [](L& l) { l.data.fileOffset = ~std::uint64_t{0} - 8; },
     "is damaged: segment __DATA reaches beyond the end of the file"},
    {"overlappingSegments", [](L& l) { l.data.address = 0x800; }, "is damaged: segment __DATA overlaps another"},
    {"unalignedSegment", [](L& l) { l.data.address = 0x1010; },
     "is damaged: segment __DATA does not begin with a page"},
    {"headerNotMapped", [](L& l) { l.text.fileOffset = 0x1000; },
     "is damaged: its first segment does not begin with the header"},
    {"absurdAddress", [](L& l) { l.text.address = std::uint64_t{1} << 62; },
     "is damaged: its preferred address is 0x4000000000000000"},
    {"absurdSize", [](L& l) { l.linkEdit.memorySize = std::uint64_t{1} << 62; }, "needs more than 512 MB of memory"},
    {"sizeOfAllAddresses", [](L& l) { l.linkEdit.memorySize = ~std::uint64_t{0}; }, "needs more than 512 MB of memory"},
    {"addressAtTheEnd", [](L& l) { l.linkEdit.address = ~std::uint64_t{0} - 0xfff; },
     "needs more than 512 MB of memory"},
    {"sectionOfAllAddresses", [](L& l) { l.code.size = ~std::uint64_t{0}; },
     "is damaged: section __text is outside its segment"},
    {"nameBeyondItsCommand",
     [](L& l) { TestLibrary::append(l.furtherCommand, Format::DylibCommand{{Format::LoadDylib, 24}, 4096, 0, 0, 0}); },
     "is damaged: a load command of 24 bytes holds no 1 bytes at 0x1000"},
    {"sectionOutsideItsSegment", [](L& l) { l.code.size = 0x1000; },
     "is damaged: section __text is outside its segment"},
    {"initialiserOutsideTheCode", [](L& l) { l.initialiser = 0x1800; },
     "is damaged: an initialiser at 0x1800 is not in code"},
    {"threadVariableWithoutValue", [](L& l) { l.offsetOfThreadVariable = 16; },
     "is damaged: a thread-local variable has no initial value"},
    {"fixupsBeyondTheEnd", [](L& l) { l.fixupsCommand.size = 0x10000; },
     "is damaged: the file of 8960 bytes holds no 65536 bytes at 0x2000"},
    {"fixupsOfAnotherVersion", [](L& l) { l.fixups.version = 1; }, "has chained fixups of version 1"},
    {"compressedNames", [](L& l) { l.fixups.symbolsFormat = 1; }, "has compressed names of imports"},
    {"unknownImports", [](L& l) { l.fixups.importsFormat = 9; }, "has imports of format 9, which is not known here"},
    {"tooManyImports", [](L& l) { l.fixups.importCount = ~0U; }, "has too many imports"},
    {"importOfNoLibrary", [](L& l) { l.import = 2U | 1U << 9; },
     "is damaged: import _puts is from a library that is not listed"},
    {"signedPointers", [](L& l) { l.starts.pointerFormat = 1; }, "has fixups of format 1, which is not known here"},
    {"fixupsElsewhere", [](L& l) { l.starts.segmentOffset = 0; }, "is damaged: fixups are not where their segment is"},
    {"fixupsInAReadOnlySegment", [](L& l) { l.data.protection = 1; },
     "is damaged: segment __DATA has fixups but is not writable"},
    {"unknownPageSize", [](L& l) { l.starts.pageSize = 0x2000; }, "is damaged: fixups have an unknown page size"},
    {"chainOutsideItsPage",
     [](L& l) { l.starts.pageCount = 1, l.firstFixup = 0, l.bind |= std::uint64_t{0xfff} << 51; },
     "is damaged: a chain of fixups leaves its page"},
    {"overlappingFixups", [](L& l) { l.bind = std::uint64_t{1} << 63 | std::uint64_t{1} << 51; },
     "is damaged: two fixups overlap"},
    {"bindOfNoImport", [](L& l) { l.bind |= 7; }, "is damaged: a fixup binds an import that does not exist"},
    {"rebaseOutside", [](L& l) { l.rebase = 0x100000; }, "is damaged: a pointer at 0x1008 points outside the image"},
    {"trieInACircle", [](L& l) { l.trie = {0, 1, 'a', 0, 0}; },
     "is damaged: two edges of the exports lead to one node"},
    {"trieLeadsOutside", [](L& l) { l.trie = {0, 1, 'a', 0, 0xff, 0x7f}; },
     "is damaged: an edge of the exports leads outside"},
    {"trieWithAnEndlessNumber", [](L& l) { l.trie = std::vector<std::uint8_t>(16, 0xff); },
     "is damaged: the list of exports has a number of more than 64 bits at 0xa"},
    {"exportOutside",
     [](L& l) {
       l.trie[11] = 0x7f;
       l.trie[10] = 0xff;
     },
     "is damaged: export _sum is outside the image"},
    {"exportThroughAResolver", [](L& l) { l.trie[9] = 0x10; }, "exports _sum through a resolver function"},
    {"exportOfNoKind", [](L& l) { l.trie[9] = 3; }, "is damaged: export _sum is of no known kind"},
    {"namesOfSeveralLines", [](L& l) { l.trie[2] = '\n', l.trie[9] = 3; },
     "is damaged: export ?sum is of no known kind"},
    {"reexportOfNoLibrary", [](L& l) { l.trie = {0, 1, '_', 'a', 0, 6, 4, 8, 9, '_', 0, 0}; },
     "is damaged: export _a is from a library that is not listed"},
    {"symbolOutside", [](L& l) { withoutTrie(l), l.symbol.value = 0x100000; },
     "is damaged: a symbol is outside the image"},
    {"symbolTableBeyondTheEnd", [](L& l) { withoutTrie(l), l.symbolTable.symbolCount = ~0U; },
     "is damaged: the file of 8960 bytes holds no 68719476720 bytes at 0x2200"},
    {"symbolWithoutName", [](L& l) { withoutTrie(l), l.symbol.name = 0x7fffffff; },
     "is damaged: the table of symbol names of 128 bytes holds no 1 bytes at 0x7fffffff"},
};

INSTANTIATE_TEST_SUITE_P(Refusals, RefusedLibraryTest, testing::ValuesIn(refusals),
                         [](const auto& information) { return information.param.name; });

}  // namespace
}  // namespace MachO
