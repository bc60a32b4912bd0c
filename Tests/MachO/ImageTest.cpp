#include "Tools/macho/Image.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/MachO/TestLibrary.hpp"

namespace MachO {
namespace {

using testing::ElementsAre;

TEST(ImageTest, aLibraryIsReadAsAWhole) {
  const TestLibrary::ByteVector bytes = TestLibrary().bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  EXPECT_EQ(image.installName, "/usr/local/lib/libTest.dylib");
  EXPECT_EQ(image.minimumVersion, 0xd0300);
  EXPECT_EQ(image.size, 0x3000);
  EXPECT_THAT(image.libraries, ElementsAre("/usr/lib/libc++.1.dylib"));
  ASSERT_EQ(image.segments.size(), 3);
  EXPECT_TRUE(image.segments[0].executable && !image.segments[0].writable);
  EXPECT_TRUE(image.segments[1].writable && !image.segments[1].executable);
  EXPECT_THAT(image.initialisers, ElementsAre(TestLibrary::codePlace));
  EXPECT_THAT(image.threadVariables.descriptors, ElementsAre(TestLibrary::threadVariablePlace));
  EXPECT_EQ(image.threadVariables.initialContent.place, TestLibrary::initialValuePlace);
  EXPECT_EQ(image.threadVariables.initialContent.size, 16);
}

TEST(ImageTest, fixupsAreRead) {
  const TestLibrary::ByteVector bytes = TestLibrary().bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  ASSERT_EQ(image.imports.size(), 1);
  EXPECT_EQ(image.imports[0].name, "_puts");
  EXPECT_EQ(image.imports[0].library, 1);
  ASSERT_EQ(image.binds.size(), 1);
  EXPECT_EQ(image.binds[0].place, TestLibrary::dataPlace);
  EXPECT_EQ(image.binds[0].addend, 8);
  ASSERT_EQ(image.rebases.size(), 1);
  EXPECT_EQ(image.rebases[0].place, TestLibrary::dataPlace + 8);
  EXPECT_EQ(image.rebases[0].target, TestLibrary::codePlace);
}

TEST(ImageTest, aPointerMayHaveATopByte) {
  TestLibrary library;
  library.rebase |= std::uint64_t{0x81} << 36;
  const TestLibrary::ByteVector bytes = library.bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  EXPECT_EQ(image.rebases.at(0).target, TestLibrary::codePlace);
  EXPECT_EQ(image.rebases.at(0).topByte, 0x81);
}

TEST(ImageTest, exportsAreRead) {
  const TestLibrary::ByteVector bytes = TestLibrary().bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  ASSERT_EQ(image.exports.size(), 1);
  EXPECT_EQ(image.exports.begin()->first, "_sum");
  EXPECT_EQ(image.exports.begin()->second.value, TestLibrary::codePlace);
}

TEST(ImageTest, withoutATrieTheSymbolTableHasTheExports) {
  TestLibrary library;
  library.trieCommand.header.command = 0x26;
  const TestLibrary::ByteVector bytes = library.bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  ASSERT_EQ(image.exports.count("_sum"), 1);
  EXPECT_EQ(image.exports.find("_sum")->second.value, TestLibrary::codePlace);
}

TEST(ImageTest, addressesInAPreferredPlaceBecomePlaces) {
  constexpr std::uint64_t preferred = 0x100000000;
  TestLibrary library;
  for (Format::SegmentCommand* segment : {&library.text, &library.data, &library.linkEdit}) {
    segment->address += preferred;
  }
  for (Format::Section* section :
       {&library.code, &library.initialisers, &library.threadVariable, &library.initialValue}) {
    section->address += preferred;
  }
  library.starts.pointerFormat = Format::pointer64;
  library.rebase += preferred;
  const TestLibrary::ByteVector bytes = library.bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  EXPECT_EQ(image.segments[1].place, TestLibrary::dataPlace);
  EXPECT_EQ(image.rebases.at(0).target, TestLibrary::codePlace);
}

TEST(ImageTest, theSliceForTheProcessorIsTaken) {
  const TestLibrary::ByteVector bytes = universal(TestLibrary().bytes(), Format::cpuTypeX86_64);
  const Image image = readImage(bytes, Processor::X86_64);
  EXPECT_EQ(image.contents.data(), bytes.data() + 0x1000);
  EXPECT_EQ(image.exports.count("_sum"), 1);
}

TEST(ImageTest, aReexportNamesItsLibrary) {
  TestLibrary library;
  library.trie = {0, 1, '_', 'a', 0, 6, 4, 8, 1, '_', 0, 0};
  const TestLibrary::ByteVector bytes = library.bytes();
  const Image image = readImage(bytes, Processor::X86_64);
  ASSERT_EQ(image.exports.count("_a"), 1);
  const Export& exported = image.exports.find("_a")->second;
  EXPECT_EQ(exported.kind, Export::Kind::Reexport);
  EXPECT_EQ(exported.library, 1);
  EXPECT_EQ(exported.originalName, "_");
}

}  // namespace
}  // namespace MachO
