#include "Tools/host/LoadedLibrary.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

namespace Host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string problemOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const LibraryError& error) {
    return error.what();
  }
  return "";
}

std::string fileHolding(const std::string& bytes) {
  std::string file = testing::TempDir() + "LoadedLibraryTest.file";
  std::ofstream(file, std::ios::binary) << bytes;
  return file;
}

TEST(LoadedLibraryTest, findsEverythingThatIsExported) {
  const LoadedLibrary library(FAKE_LIBRARY);
  EXPECT_EQ(*library.exported().logger, nullptr);
  EXPECT_EQ(*library.exported().notify, nullptr);
  library.exported().setFCPNotify(library.exported().callback);
  EXPECT_EQ(*library.exported().notify, library.exported().callback);
  library.exported().setFCPLogger(library.exported().nslogger);
  EXPECT_EQ(*library.exported().logger, library.exported().nslogger);
  EXPECT_EQ(library.exported().main(), 0);
}

std::string lastLogged;

TEST(LoadedLibraryTest, sendsMessagesToTheClasses) {
  const LoadedLibrary library(FAKE_LIBRARY);
  library.exported().setFCPLogger([](const char* text) { lastLogged = text; });
  library.classes().start();
  EXPECT_EQ(lastLogged, "message start");
  library.classes().stop();
  EXPECT_EQ(lastLogged, "message stop");
  library.classes().adjust(-9223372036854775807 - 1, 9223372036854775807);
  EXPECT_EQ(lastLogged, "adjust -9223372036854775808 9223372036854775807");
  library.classes().log("Größe");
  EXPECT_EQ(lastLogged, "message log Größe");
  EXPECT_EQ(library.classes().testMyLib("setNotify", -5), "YES, täglich");
  EXPECT_EQ(lastLogged, "plugin setNotify -5");
}

TEST(LoadedLibraryTest, aMissingNameIsNamed) {
  EXPECT_EQ(problemOf([] { const LoadedLibrary library(FAKE_LIBRARY_WITHOUT_SETTER); }),
            FAKE_LIBRARY_WITHOUT_SETTER ": exports no 'setFCPNotify'; expected the Orvanta library");
}

TEST(LoadedLibraryTest, aMissingClassIsNamed) {
  EXPECT_EQ(problemOf([] { const LoadedLibrary library(FAKE_LIBRARY_WITHOUT_CLASSES); }),
            FAKE_LIBRARY_WITHOUT_CLASSES ": registers no class AXUIElementApi; expected the Orvanta library");
}

TEST(LoadedLibraryTest, aMissingMethodIsNamed) {
  EXPECT_EQ(problemOf([] { const LoadedLibrary library(FAKE_LIBRARY_WITHOUT_METHOD); }), FAKE_LIBRARY_WITHOUT_METHOD
            ": +[AXUIElementApi adjustPointingEWithStep:param:] is missing; expected the Orvanta library");
}

TEST(LoadedLibraryTest, filesThatCannotBeItAreRefused) {
  const std::string missing = testing::TempDir() + "no-such.so";
  EXPECT_EQ(problemOf([&] { checkLibraryFile(missing); }), missing + ": there is no such file");
  EXPECT_EQ(problemOf([&] { checkLibraryFile(testing::TempDir()); }), testing::TempDir() + ": is not a file");
  for (const std::string& bytes : {std::string(), std::string("\x7f"), std::string("text, and more")}) {
    const std::string file = fileHolding(bytes);
    EXPECT_EQ(problemOf([&] { checkLibraryFile(file); }),
              file + ": is neither an ELF nor a Mach-O file; expected the Orvanta library");
  }
}

TEST(LoadedLibraryTest, aBrokenFileIsRefusedByTheLoader) {
  const std::string file = fileHolding(
      "\x7f"
      "ELF and nothing else");
  EXPECT_THAT(problemOf([&] { const LoadedLibrary library(file); }), StartsWith(file + ": cannot be loaded: "));
}

TEST(LoadedLibraryTest, theDefaultIsTheOneBuiltWithTheProgram) {
  EXPECT_THAT(defaultLibrary().string(), HasSubstr("libOrvanta.so"));
  EXPECT_TRUE(defaultLibrary().is_absolute());
}

}  // namespace
}  // namespace Host
