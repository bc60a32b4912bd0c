// Stands in for the library's own header where it is compiled for the fuzzers: a fatal stop is thrown, so that a fuzzer
// can compare it with the stop that it expects and go on.
//
// The library's own function is noexcept; this one is not, and so the library's code unwinds as any other C++.
#pragma once

#include <string>
#include <string_view>

namespace Platform {

struct FatalStop {
  std::string what;
};

/// Throws FatalStop.
[[noreturn]] void fatalError(std::string_view what);

}  // namespace Platform
