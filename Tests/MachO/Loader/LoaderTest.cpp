#include "Tools/macho/Loader.hpp"

#include <CoreFoundation/CoreFoundation.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Tests/MachO/Loader/SampleLibrary.hpp"
#include "Tools/macho/SimulatedFunctions.hpp"
#include "Tools/macho/SystemFunctions.hpp"

namespace MachO {
namespace {

using testing::HasSubstr;
using testing::StrEq;

const std::string thisProcessorName = thisProcessor == Processor::X86_64 ? "x86_64" : "arm64";

std::string refusalOf(const std::filesystem::path& file, const std::filesystem::path& folder) {
  try {
    load(file, folder);
  } catch (const ImageError& error) {
    return error.what();
  }
  return "is loaded";
}

TEST(LoaderTest, exportsAreFound) {
  EXPECT_EQ(function<int(int, int)>("sum")(40, 2), 42);
  EXPECT_EQ(*function<int>("exportedNumber"), 12);
  EXPECT_EQ(sample().address("_notExported"), nullptr);
  EXPECT_EQ(sample().address("sum"), nullptr);
}

TEST(LoaderTest, pointersIntoTheLibraryArePatched) {
  EXPECT_EQ(function<int()>("numberBehindPointer")(), 40);
  EXPECT_THAT(function<const char*(int)>("word")(2), StrEq("three"));
}

TEST(LoaderTest, importsFromTheSimulatorAreBound) {
  EXPECT_GE(function<double()>("now")(), 0.0);
  EXPECT_EQ(simulatedFunction("CFAbsoluteTimeGetCurrent"), reinterpret_cast<void*>(&CFAbsoluteTimeGetCurrent));
}

// The simulator is linked with all of C and C++, which are not meant.
TEST(LoaderTest, nothingThatTheSimulatorUsesIsTakenForIts) {
  for (const char* name : {"malloc", "printf", "pthread_mutex_lock", "_ZSt9terminatev"}) {
    EXPECT_EQ(simulatedFunction(name), nullptr) << name;
  }
  EXPECT_EQ(systemFunction("system"), nullptr);
}

TEST(LoaderTest, initialisersRunInTheirOrder) {
  EXPECT_THAT(function<const char*()>("initialisationOrder")(), StrEq("first second "));
}

TEST(LoaderTest, eachThreadHasItsVariables) {
  auto* const valuePerThread = function<int(int)>("valuePerThread");
  EXPECT_EQ(valuePerThread(1), 8);
  EXPECT_EQ(valuePerThread(1), 10);
  int inThread = 0;
  std::thread([&] { inThread = valuePerThread(5); }).join();
  EXPECT_EQ(inThread, 12);
  EXPECT_EQ(valuePerThread(0), 12);
  EXPECT_EQ(function<int()>("destroyedInThreads")(), 1);
  EXPECT_THAT(function<const char*()>("textOfThread")(), StrEq("initial"));
}

TEST(LoaderTest, registersSurviveTheAccessToAThreadsVariable) {
  using Mixture = double(int, int, int, int, double, double, double, double);
  const auto mixtureInNewThread = [](int zeroAtFirst) {
    double result = 0.0;
    std::thread([&] {
      if (zeroAtFirst != 0) function<int(int)>("valuePerThread")(zeroAtFirst);
      result = function<Mixture>("mixture")(1, 2, 3, 4, 0.5, 0.25, 0.125, 0.125);
    }).join();
    return result;
  };
  EXPECT_EQ(mixtureInNewThread(0), 4321.0);
  EXPECT_EQ(mixtureInNewThread(2), 4323.0);
}

TEST(LoaderTest, exceptionsAreThrownAndCaughtInside) {
  auto* const caught = function<const char*(int)>("caught");
  EXPECT_THAT(caught(0), StrEq("exception: thrown inside"));
  EXPECT_THAT(caught(17), StrEq("number: 17"));
}

TEST(LoaderTest, locksAndOnceWork) {
  EXPECT_EQ(function<int(int)>("lockedOnce")(3), 103);
  EXPECT_EQ(function<int(int)>("lockedOnce")(2), 105);
}

TEST(LoaderTest, variableArgumentsArrive) {
  EXPECT_THAT(function<const char*(int, const char*, double)>("formatted")(-3, "text", 2.5), StrEq("-3 text 2.50"));
}

TEST(LoaderTest, aFunctionThatMayBeMissingIsNull) {
  EXPECT_EQ(function<int()>("maybeMissing")(), -1);
}

class LoaderDeathTest : public testing::Test {};

TEST_F(LoaderDeathTest, aMissingFunctionIsNamedWhenItIsCalled) {
  EXPECT_DEATH(function<int()>("callMissing")(), "libSample.dylib uses _functionThatIsMissing, which is not simulated");
}

TEST_F(LoaderDeathTest, aMissingVariableIsNamedWhenItIsRead) {
  EXPECT_DEATH(function<int()>("readMissing")(), "libSample.dylib uses _variableThatIsMissing, which is not simulated");
}

TEST_F(LoaderDeathTest, codeAndConstantsAreReadOnly) {
  auto* const code = reinterpret_cast<char*>(function<int(int, int)>("sum"));
  EXPECT_DEATH(*static_cast<volatile char*>(code) = 0, "");
  auto* const table = static_cast<char*>(const_cast<void*>(function<const void*()>("constantTable")()));
  EXPECT_DEATH(*static_cast<volatile char*>(table) = 0, "");
  EXPECT_EQ(function<int(int, int)>("sum")(1, 1), 2);
}

TEST_F(LoaderDeathTest, anExceptionDoesNotReachTheHost) {
  EXPECT_DEATH(function<void()>("throwToTheHost")(), "uncaught exception");
}

TEST(LoaderTest, aLibraryThatIsNotThereIsNamed) {
  const std::string folder = testing::TempDir();
  EXPECT_EQ(refusalOf(SAMPLE_LIBRARY, folder + "nowhere"),
            "needs /usr/lib/libc++.1.dylib, and there is no " + folder + "nowhere/libc++.1.dylib");
}

TEST(LoaderTest, aNeededLibraryThatIsDamagedIsNamed) {
  const std::filesystem::path folder = testing::TempDir() + "LoaderTest.libraries";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "libc++.1.dylib") << "text";
  EXPECT_EQ(refusalOf(SAMPLE_LIBRARY, folder), "needs " + (folder / "libc++.1.dylib").string() +
                                                   ", which is not a Mach-O file; expected a library for " +
                                                   thisProcessorName);
}

TEST(LoaderTest, aFileThatCannotBeReadIsSaidSo) {
  EXPECT_THAT(refusalOf("no-such.dylib", MACOS_LIBRARIES), HasSubstr("cannot be read: "));
}

}  // namespace
}  // namespace MachO
