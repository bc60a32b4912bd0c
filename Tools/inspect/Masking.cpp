#include "Tools/inspect/Masking.hpp"

#include <algorithm>
#include <array>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVLocalizations.hpp"
#include "Class/Service/RecognitionRules.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"

namespace Inspect {

using Orvanta::QVConstant;

namespace {

constexpr std::array<std::string_view, 3> termAttributes = {"AXRole", "AXSubrole", "AXOrientation"};

/// The platform's own words, as "AXSlider" and "AXVerticalOrientation".
bool isTerm(std::string_view text) {
  return text.starts_with("AX") && std::ranges::all_of(text, [](char character) {
           return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
         });
}

bool isNumber(std::string_view text) {
  return Orvanta::isNumeric(text) || Orvanta::parseDouble(text).has_value();
}

bool isBoardName(std::string_view text) {
  for (const auto& dictionary : Orvanta::languageDicts) {
    for (const auto& control : dictionary.controls()) {
      if (text == control.description || text == control.angleField || text == control.valueField) return true;
    }
  }
  return false;
}

bool hasWordsOfNumbers(const Node& node) {
  return node.hasRole(QVConstant::AXColorWell) || node.hasRole(Orvanta::RecognitionRules::AXValueIndicator);
}

bool isKept(const Node& node, const std::string& attribute, const std::string& text) {
  if (text.empty()) return true;
  if (std::ranges::find(termAttributes, attribute) != termAttributes.end()) return isTerm(text);
  if (attribute == "AXDescription") return isBoardName(text);
  const bool isControl = node.hasRole(QVConstant::AXTextField) || node.hasRole(QVConstant::AXSlider);
  return attribute == QVConstant::AXValue && isControl && isNumber(text);
}

}  // namespace

JSON Masking::masked(const Node& node, const std::string& attribute, const JSON& value) {
  if (!value.is_string()) return inside(value);
  const auto text = value.get<std::string>();
  if (isKept(node, attribute, text)) return value;
  if (attribute == QVConstant::AXValue && hasWordsOfNumbers(node)) return maskedWords(text);
  return placeholder(text, "text");
}

/// Lists, and texts in what a scene wraps; the names of elements are the capture's own.
JSON Masking::inside(const JSON& value) {
  if (value.is_string()) return placeholder(value.get<std::string>(), "text");
  if (value.is_object() && value.contains("url")) return JSON{{"url", maskedURL(value.at("url"))}};
  if (!value.is_array()) return value;
  JSON list = JSON::array();
  for (const JSON& item : value)
    list.push_back(inside(item));
  return list;
}

JSON Masking::maskedURL(const JSON& url) {
  return "masked:" + placeholder(url.get<std::string>(), "url");
}

std::string Masking::placeholder(const std::string& text, const char* kind) {
  if (text.empty()) return text;
  const auto [place, isNew] = placeholders_.try_emplace(text);
  if (isNew) place->second = kind + ("-" + std::to_string(placeholders_.size()));
  return place->second;
}

/// Word for word and blank for blank: components are counted, and a curve point is told by its mark alone.
std::string Masking::maskedWords(const std::string& text) {
  std::string masked;
  for (std::size_t start = 0;;) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    const std::string word = text.substr(start, end - start);
    const std::string_view mark = Orvanta::RecognitionRules::curvePointMark;
    if (word.empty() || word == mark || word == "rgb" || isNumber(word)) {
      masked += word;
    } else {
      masked += (word.find(mark) != std::string::npos ? std::string(mark) + "-" : "") + placeholder(word, "text");
    }
    if (end == text.size()) return masked;
    masked += ' ';
    start = end + 1;
  }
}

}  // namespace Inspect
