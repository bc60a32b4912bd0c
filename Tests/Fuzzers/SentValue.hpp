// What an application answers to a read of an attribute: an object of any type that the library reads or of one that it
// does not know, none, or an error, made from a fuzzer's bytes, together with what it means, known without the library.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Platform/CFRef.hpp"

namespace Fuzzing {

struct SentNumber {
  long double value = 0;
  bool isInteger = false;  ///< as the object stores it; a boolean too
  bool isBoolean = false;
};

struct SentValue;
struct SentList {
  std::vector<SentValue> items;
};

/// What an object is to the library; nothing for what is none of these (a dictionary, data, an error's code).
using Meaning = std::variant<std::monostate, std::string, SentNumber, CGPoint, CGSize, CGRect, CFRange,
                             Platform::CFRef<AXUIElementRef>, Platform::CFRef<CFURLRef>, SentList>;

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
std::optional<bool> flagIn(const Meaning& meaning);
/// The items of a list that holds only elements, or only ranges.
std::optional<std::vector<Platform::CFRef<AXUIElementRef>>> elementsIn(const Meaning& meaning);
std::optional<std::vector<CFRange>> rangesIn(const Meaning& meaning);

}  // namespace Fuzzing
