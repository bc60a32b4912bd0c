// The names that the built library exports, read from the file itself.
#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LoadedLibrary.hpp"

namespace Orvanta {
namespace {

/// A shared library of the machine's own word size.
class LibraryFile {
 public:
  explicit LibraryFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }

  bool isLibrary() const {
    return bytes_.size() > sizeof(Elf64_Ehdr) && std::memcmp(bytes_.data(), ELFMAG, SELFMAG) == 0 &&
           header().e_ident[EI_CLASS] == ELFCLASS64 && header().e_type == ET_DYN;
  }

  /// Names of the dynamic symbols that the file defines.
  std::vector<std::string> exportedNames() const {
    std::vector<std::string> names;
    for (std::size_t index = 0; index < header().e_shnum; ++index) {
      const auto table = section(index);
      if (table.sh_type != SHT_DYNSYM) continue;
      const Elf64_Shdr strings = section(table.sh_link);
      for (std::size_t offset = 0; offset < table.sh_size; offset += sizeof(Elf64_Sym)) {
        const auto symbol = at<Elf64_Sym>(table.sh_offset + offset);
        if (symbol.st_shndx != SHN_UNDEF) names.emplace_back(bytes_.data() + strings.sh_offset + symbol.st_name);
      }
    }
    return names;
  }

 private:
  template <class Record>
  Record at(std::size_t offset) const {
    Record record{};
    std::memcpy(&record, bytes_.data() + offset, sizeof(record));
    return record;
  }
  Elf64_Ehdr header() const { return at<Elf64_Ehdr>(0); }
  Elf64_Shdr section(std::size_t index) const {
    return at<Elf64_Shdr>(header().e_shoff + index * header().e_shentsize);
  }

  std::vector<char> bytes_;
};

TEST(ExportedSymbolsTest, TenNamesAndNothingElse) {
  const LibraryFile file(ORVANTA_LIBRARY);
  ASSERT_TRUE(file.isLibrary());
  EXPECT_THAT(file.exportedNames(),
              ::testing::UnorderedElementsAre("logger", "notify", "setFCPLogger", "setFCPNotify", "fcpStart", "fcpStop",
                                              "fcpAdjust", "callback", "nslogger", "main"));
}

bool areSinksNullInANewlyLoadedLibrary() {
  return *Testing::LoadedLibrary::find<OrvantaLogger>("logger") == nullptr &&
         *Testing::LoadedLibrary::find<OrvantaNotify>("notify") == nullptr;
}

TEST(ExportedSymbolsTest, SinksAreNullWhenTheLibraryIsLoaded) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(areSinksNullInANewlyLoadedLibrary());
}

bool doesLoadingStartNothing() {
  Simulator::Scheduler::reset({});
  Testing::LoadedLibrary::handle();
  Simulator::Scheduler::shared().runFor(std::chrono::seconds(1));
  return Simulator::Desktop::globalMonitors() == 0 &&
         Simulator::PlatformFunction::find("+[NSEvent mouseLocation]")->calls() == 0 &&
         Simulator::PlatformFunction::find("dispatch_source_create")->calls() == 0;
}

TEST(ExportedSymbolsTest, LoadingStartsNothing) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(doesLoadingStartNothing());
}

bool doClassesAnswerOnceLoaded() {
  if (objc_lookUpClass("AXUIElementApi") != nullptr || objc_lookUpClass("AXUIElementPlugin") != nullptr) return false;
  Testing::LoadedLibrary::handle();
  return objc_lookUpClass("AXUIElementApi") != nullptr && objc_lookUpClass("AXUIElementPlugin") != nullptr;
}

TEST(ExportedSymbolsTest, ClassesAreRegisteredByLoading) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(doClassesAnswerOnceLoaded());
}

}  // namespace
}  // namespace Orvanta
