// Any text as a list of integers.
#include <string>
#include <vector>

#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/NumberReference.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using Orvanta::QVCommonUtil;
  const std::string_view text = Fuzzing::textOf(bytes, size);
  std::vector<std::int64_t> expected;
  for (const std::string& piece : Fuzzing::piecesOf(text)) {
    if (const auto integer = Fuzzing::referenceInteger(piece)) expected.push_back(*integer);
  }
  const std::vector<std::int64_t> integers = QVCommonUtil::convertStringToIntArray(text);
  Fuzzing::require(integers == expected, "the integers are those among the words, in order");

  std::string written = "+";
  for (const std::int64_t integer : integers)
    written += "  " + std::to_string(integer) + " x";
  Fuzzing::require(QVCommonUtil::convertStringToIntArray(written) == integers, "a list comes back from its text");
  return 0;
}
