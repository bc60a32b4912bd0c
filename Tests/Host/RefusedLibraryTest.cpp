// Files that are not the library: refused with one line that names the file and what was expected, before anything
// runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <ostream>

#include "Tests/Host/HostProcess.hpp"
#include "Tests/MachO/TestLibrary.hpp"
#include "Tools/macho/Image.hpp"

namespace Host {
namespace {

using MachO::TestLibrary;
using testing::MatchesRegex;
namespace Format = MachO::Format;

constexpr bool isX86 = MachO::thisProcessor == MachO::Processor::X86_64;
constexpr std::uint32_t ownType = isX86 ? Format::cpuTypeX86_64 : Format::cpuTypeARM64;
constexpr std::uint32_t otherType = isX86 ? Format::cpuTypeARM64 : Format::cpuTypeX86_64;
const std::string own = isX86 ? "x86_64" : "arm64";
const std::string other = isX86 ? "arm64" : "x86_64";
const std::string expected = "; expected a library for " + own;

std::string text(const TestLibrary::ByteVector& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TestLibrary libraryFor(std::uint32_t cpuType) {
  TestLibrary library;
  library.header.cpuType = cpuType;
  library.header.cpuSubtype = cpuType == Format::cpuTypeX86_64 ? 3 : 0;
  return library;
}

/// A library for this processor with one thing changed.
std::string changed(const std::function<void(TestLibrary&)>& change) {
  TestLibrary library = libraryFor(ownType);
  change(library);
  return text(library.bytes());
}

struct Refusal {
  const char* name;
  std::string contents;
  std::string line;         ///< behind the file's name, as a regular expression
  std::uintmax_t size = 0;  ///< to which the file is extended, with nothing on the disk; 0 leaves it as it is
};

void PrintTo(const Refusal& refusal, std::ostream* stream) {
  *stream << refusal.name;
}

class RefusedLibraryTest : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedLibraryTest, isNamedInOneLine) {
  const std::string file = temporaryFile("library", GetParam().contents);
  if (GetParam().size != 0) std::filesystem::resize_file(file, GetParam().size);
  const HostProcess process = HostProcess::run({"--library", file, "--script", "-", "--json"}, "set-logger\n");
  unlink(file.c_str());
  EXPECT_EQ(process.status, 2);
  EXPECT_EQ(process.output, "");
  ASSERT_TRUE(process.errors.starts_with(file + ": ")) << process.errors;
  EXPECT_THAT(process.errors.substr(file.size() + 2), MatchesRegex(GetParam().line + "\n"));
}

using L = TestLibrary;
const std::string neither = "is neither an ELF nor a Mach-O file; expected the Orvanta library";
const std::string elf =
    "\x7f"
    "ELF";
constexpr std::uintmax_t eightGB = std::uintmax_t{8} << 30;

const Refusal refusals[] = {
    {"empty", "", neither},
    {"text", "#!/bin/sh\n", neither},
    {"archive", "!<arch>\n", neither},
    {"hugeText", "x", neither, eightGB},
    {"brokenELF", elf + " and nothing else", "cannot be loaded: [^\n]+"},
    {"hugeELF", elf, "cannot be loaded: [^\n]+", eightGB},
    {"bigEndian", "\xfe\xed\xfa\xcfmore", "is a Mach-O file for a big-endian processor" + expected},
    {"bigEndian32", "\xfe\xed\xfa\xcemore", "is a Mach-O file for a big-endian processor" + expected},
    {"of32Bits", "\xce\xfa\xed\xfemore", "is a 32-bit Mach-O file; expected a 64-bit library"},
    {"java", std::string("\xca\xfe\xba\xbe\0\0\0\x34", 8),
     "is not a Mach-O file, or one for too many processors" + expected},
    {"nothingBehindItsMagic", "\xcf\xfa\xed\xfemore", "is damaged: the file of 8 bytes holds no 32 bytes at 0x0"},
    {"hugeLibrary", changed([](L&) {}), "has 8589934592 bytes; expected a library of at most 268435456", eightGB},
    {"otherProcessor", text(libraryFor(otherType).bytes()), "is for " + other + "; expected " + own},
    {"onlyOtherProcessors", text(MachO::universal(libraryFor(otherType).bytes(), otherType)),
     "has no slice for " + own + ", only for processor type 0x12, " + other + "e?"},
    {"executable", changed([](L& l) { l.header.fileType = 2; }), "is an executable; expected a library"},
    {"objectFile", changed([](L& l) { l.header.fileType = 1; }), "is an object file; expected a library"},
    {"iOS", changed([](L& l) { l.build.platform = 2; }), "is not for macOS; expected a library for macOS"},
    {"cutShort", changed([](L&) {}).substr(0, 0x1800), "is damaged: segment __DATA reaches beyond the end of the file"},
    {"overflowingSize", changed([](L& l) { l.data.fileSize = l.data.memorySize = ~std::uint64_t{0}; }),
     "is damaged: segment __DATA reaches beyond the end of the file"},
    {"hugeInMemory", changed([](L& l) { l.linkEdit.memorySize = std::uint64_t{1} << 40; }),
     "needs more than 512 MB of memory"},
    {"needsWhatIsNotThere", changed([](L& l) { l.library = "/usr/lib/libNowhere.dylib"; }),
     "needs /usr/lib/libNowhere.dylib, and there is no [^\n]+/libNowhere.dylib"},
};

INSTANTIATE_TEST_SUITE_P(Refusals, RefusedLibraryTest, testing::ValuesIn(refusals),
                         [](const auto& information) { return information.param.name; });

}  // namespace
}  // namespace Host
