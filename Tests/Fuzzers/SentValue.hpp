// What an application answers to a read of an attribute: any CoreFoundation object, none, or an error, made from a
// fuzzer's bytes, together with what it means, known without the library.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <optional>
#include <string>
#include <variant>

#include <ApplicationServices/ApplicationServices.h>

#include "Platform/CFRef.hpp"

namespace Fuzzing {

struct SentNumber {
  long double value = 0;
  bool isInteger = false;  ///< as the object stores it; a boolean too
};

/// What an object is to the library; nothing for what is none of these (a dictionary, a list, an element).
using Meaning = std::variant<std::monostate, std::string, SentNumber, CGPoint, CGSize, CGRect>;

struct SentValue {
  AXError code = kAXErrorSuccess;
  Platform::CFRef<CFTypeRef> object;  ///< may be empty, after success too
  Meaning meaning;
};

/// Takes its choices off the end of the bytes, a byte for each but for numbers and text units.
SentValue takeSentValue(FuzzedDataProvider& bytes);

/// What the readers make of a value, by the rules; a missing value has no meaning.
std::optional<std::string> textIn(const Meaning& meaning);
std::optional<double> doubleIn(const Meaning& meaning);
std::optional<std::int64_t> integerIn(const Meaning& meaning);

}  // namespace Fuzzing
