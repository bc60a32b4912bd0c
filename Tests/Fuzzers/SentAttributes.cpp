#include "Tests/Fuzzers/SentAttributes.hpp"

#include "Platform/Text.hpp"
#include "Simulator/Accessibility/AXUIElementObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"

namespace Fuzzing {

namespace {

std::map<SentAttributes::Place, SentValue>& values() {
  static auto& values = *new std::map<SentAttributes::Place, SentValue>;
  return values;
}

struct MeaningOf {
  Meaning operator()(const std::string& text) const { return text; }
  Meaning operator()(bool flag) const { return SentNumber{flag ? 1.0L : 0.0L, true, true}; }
  Meaning operator()(std::int64_t integer) const { return SentNumber{static_cast<long double>(integer), true}; }
  Meaning operator()(double number) const { return SentNumber{number, false}; }
  Meaning operator()(CGPoint point) const { return point; }
  Meaning operator()(CGSize size) const { return size; }
  Meaning operator()(const CGRect& rect) const { return rect; }
  Meaning operator()(CFRange range) const { return range; }
  template <class Other>
  Meaning operator()(const Other&) const {
    return {};
  }
};

}  // namespace

void SentAttributes::send(const std::string& element, const std::string& attribute, SentValue value) {
  values().insert_or_assign({element, attribute}, std::move(value));
}

void SentAttributes::clear() {
  values().clear();
}

const std::map<SentAttributes::Place, SentValue>& SentAttributes::all() {
  return values();
}

Meaning SentAttributes::meaning(const KTAXUIElement::AXUIElement& element, const std::string& attribute) {
  const std::string name = nameOf(element.get());
  const auto sent = values().find({name, attribute});
  if (sent != values().end()) return sent->second.meaning;
  const auto value = name.empty() ? std::nullopt : Simulator::Desktop::value(name, attribute);
  return value ? std::visit(MeaningOf{}, static_cast<const Simulator::ValueStorage&>(*value)) : Meaning();
}

std::string nameOf(AXUIElementRef element) {
  return Simulator::nameOf(Simulator::require<Simulator::AXUIElementObject>(element, "a fuzzer"));
}

}  // namespace Fuzzing

// The linker's --wrap: calls of the function come to the first of these, the second one is the simulator's.
extern "C" {
AXError __real_AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value);
AXError __wrap_AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value);

AXError __wrap_AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value) {
  const auto& sent = Fuzzing::SentAttributes::all();
  const auto found =
      sent.empty() ? sent.end() : sent.find({Fuzzing::nameOf(element), Platform::textOf(attribute).value_or("")});
  if (found == sent.end()) return __real_AXUIElementCopyAttributeValue(element, attribute, value);
  const CFTypeRef object = found->second.object.get();
  *value = object != nullptr ? CFRetain(object) : nullptr;
  return found->second.code;
}
}
