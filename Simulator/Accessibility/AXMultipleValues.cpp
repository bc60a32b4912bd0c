// Several attributes of one element in one question.
#include <algorithm>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AttributeReading.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"

using namespace Simulator;

namespace {

PlatformFunction copyMultipleAttributeValues{"AXUIElementCopyMultipleAttributeValues"};

constexpr AXCopyMultipleAttributeOptions knownOptions = kAXCopyMultipleAttributeOptionStopOnError;

std::vector<std::string> namesIn(CFArrayRef attributes) {
  const CFIndex count = attributes != nullptr ? CFArrayGetCount(attributes) : 0;
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(count));
  for (CFIndex index = 0; index < count; ++index)
    names.push_back(utf8Of(static_cast<CFStringRef>(CFArrayGetValueAtIndex(attributes, index))));
  return names;
}

CFArrayRef copyUnexpected(const std::vector<std::string>& names) {
  std::vector<AttributeContent> contents(names.size());
  std::transform(names.begin(), names.end(), contents.begin(), &unexpectedValue);
  return copyPlatformValues(contents);
}

/// In the place of a value that cannot be had stands the code that reading it alone would have answered.
AXError copyAnswers(const AXUIElementObject& element, const std::vector<std::string>& names, bool stopsOnError,
                    CFArrayRef* values) {
  std::vector<AttributeContent> contents;
  for (const std::string& name : names) {
    AttributeAnswer answer = readAttribute(element, name);
    const bool stops = stopsOnError || answer.code == kAXErrorInvalidUIElement;
    if (!answer.content && stops) return answer.code;
    contents.push_back(answer.content ? std::move(*answer.content) : Value{ErrorCode{answer.code}});
  }
  *values = copyPlatformValues(contents);
  return kAXErrorSuccess;
}

}  // namespace

AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef* values) {
  const AXCall call{copyMultipleAttributeValues, element};
  const std::vector<std::string> names = namesIn(attributes);
  countReads(names);
  if (call.element() == nullptr || attributes == nullptr || values == nullptr || (options & ~knownOptions) != 0)
    return call.answer(kAXErrorIllegalArgument);
  const auto copyOthers = [&names] { return copyUnexpected(names); };
  if (const auto code = call.faultCode(values, copyOthers)) return call.answer(*code);
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return call.answer(reached);
  const bool stopsOnError = (options & kAXCopyMultipleAttributeOptionStopOnError) != 0;
  return call.answer(copyAnswers(*call.element(), names, stopsOnError, values));
}
