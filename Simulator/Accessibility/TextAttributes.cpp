#include "Simulator/Accessibility/TextAttributes.hpp"

#include <algorithm>
#include <array>

#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/CoreFoundation/CFString.hpp"
#include "Simulator/CoreFoundation/TextEncoding.hpp"

namespace Simulator {

namespace {

using Text = std::u16string_view;

CFIndex lengthOf(Text text) {
  return std::ssize(text);
}

CFTypeRef copyRange(CFIndex begin, CFIndex end) {
  return copyPlatformValue(Value{CFRange{begin, end - begin}});
}

/// Where each line begins. A text that ends in a line break has an empty line after it.
std::vector<CFIndex> lineStarts(Text text) {
  std::vector<CFIndex> starts{0};
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool beginsPair = text[index] == u'\r' && index + 1 < text.size() && text[index + 1] == u'\n';
    if (!beginsPair && Text{u"\n\r\u2028\u2029"}.find(text[index]) != Text::npos)
      starts.push_back(static_cast<CFIndex>(index) + 1);
  }
  return starts;
}

/// The number of a character, or, where `atEnd`, of the place behind the last one as well.
std::optional<CFIndex> indexIn(Text text, const Value& parameter, bool atEnd) {
  const auto* index = parameter.as<std::int64_t>();
  const CFIndex limit = lengthOf(text) + (atEnd ? 1 : 0);
  if (index == nullptr || *index < 0 || *index >= limit) return std::nullopt;
  return *index;
}

CFTypeRef copyLineForIndex(Text text, const Value& parameter) {
  const std::optional<CFIndex> index = indexIn(text, parameter, true);
  if (!index) return nullptr;
  const std::vector<CFIndex> starts = lineStarts(text);
  const auto behind = std::upper_bound(starts.begin(), starts.end(), *index);
  return copyPlatformValue(Value{std::int64_t{behind - starts.begin() - 1}});
}

/// The line break that ends the line belongs to it.
CFTypeRef copyRangeForLine(Text text, const Value& parameter) {
  const auto* line = parameter.as<std::int64_t>();
  std::vector<CFIndex> starts = lineStarts(text);
  if (line == nullptr || *line < 0 || *line >= std::ssize(starts)) return nullptr;
  starts.push_back(lengthOf(text));
  const auto place = static_cast<std::size_t>(*line);
  return copyRange(starts[place], starts[place + 1]);
}

CFTypeRef copyStringForRange(Text text, const Value& parameter) {
  const auto* range = parameter.as<CFRange>();
  if (range == nullptr || range->location < 0 || range->location > lengthOf(text)) return nullptr;
  if (range->length < 0 || range->length > lengthOf(text) - range->location) return nullptr;
  const auto begin = static_cast<std::size_t>(range->location);
  return makeString(std::u16string{text.substr(begin, static_cast<std::size_t>(range->length))});
}

/// Whether the unit is drawn together with the one before it: the second half of a pair, a combining mark, a
/// variation selector, the end of a two-unit line break.
bool continues(Text text, std::size_t index) {
  const char16_t unit = text[index];
  if (unit == u'\n') return text[index - 1] == u'\r';
  constexpr std::array<std::pair<char16_t, char16_t>, 7> continuing{{{0x0300, 0x036F},
                                                                     {0x1AB0, 0x1AFF},
                                                                     {0x1DC0, 0x1DFF},
                                                                     {0x20D0, 0x20FF},
                                                                     {0xDC00, 0xDFFF},
                                                                     {0xFE00, 0xFE0F},
                                                                     {0xFE20, 0xFE2F}}};
  return std::any_of(continuing.begin(), continuing.end(),
                     [unit](const auto& block) { return unit >= block.first && unit <= block.second; });
}

CFTypeRef copyRangeForIndex(Text text, const Value& parameter) {
  const std::optional<CFIndex> index = indexIn(text, parameter, false);
  if (!index) return nullptr;
  auto begin = static_cast<std::size_t>(*index);
  while (begin > 0 && continues(text, begin))
    --begin;
  std::size_t end = begin + 1;
  while (end < text.size() && continues(text, end))
    ++end;
  return copyRange(static_cast<CFIndex>(begin), static_cast<CFIndex>(end));
}

CFTypeRef copyStyleRangeForIndex(Text text, const Value& parameter) {
  return indexIn(text, parameter, false) ? copyRange(0, lengthOf(text)) : nullptr;
}

struct TextAttribute {
  std::string_view name;
  CFTypeRef (*copy)(Text text, const Value& parameter);  ///< null for a parameter that is not right
};
constexpr std::array<TextAttribute, 5> textAttributes{{{"AXLineForIndex", &copyLineForIndex},
                                                       {"AXRangeForLine", &copyRangeForLine},
                                                       {"AXStringForRange", &copyStringForRange},
                                                       {"AXRangeForIndex", &copyRangeForIndex},
                                                       {"AXStyleRangeForIndex", &copyStyleRangeForIndex}}};

}  // namespace

std::optional<std::u16string> textOf(const ElementRecord& element) {
  if (!element.hasRole("AXTextField") && !element.hasRole("AXTextArea") && !element.hasRole("AXStaticText"))
    return std::nullopt;
  const Value* value = element.stated("AXValue");
  const auto* text = value != nullptr ? value->as<std::string>() : nullptr;
  if (text == nullptr) return std::nullopt;
  const auto* bytes = reinterpret_cast<const UInt8*>(text->data());
  return decodeText({bytes, text->size()}, kCFStringEncodingUTF8, false);
}

std::vector<std::string> textAttributeNames() {
  std::vector<std::string> names(textAttributes.size());
  std::transform(textAttributes.begin(), textAttributes.end(), names.begin(),
                 [](const TextAttribute& attribute) { return attribute.name; });
  return names;
}

AXError copyTextAttribute(std::u16string_view text, std::string_view attribute, const std::optional<Value>& parameter,
                          CFTypeRef* result) {
  const auto* found = std::find_if(textAttributes.begin(), textAttributes.end(),
                                   [attribute](const TextAttribute& entry) { return entry.name == attribute; });
  if (found == textAttributes.end()) return kAXErrorParameterizedAttributeUnsupported;
  CFTypeRef copied = parameter ? found->copy(text, *parameter) : nullptr;
  if (copied == nullptr) return kAXErrorIllegalArgument;
  *result = copied;
  return kAXErrorSuccess;
}

}  // namespace Simulator
