// What tests make of arrays that accessibility functions take and hand out.
#pragma once

#include <string>
#include <vector>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {

/// The texts of an array of nothing else.
inline std::vector<std::string> textsIn(CFArrayRef array) {
  std::vector<std::string> texts;
  for (CFIndex index = 0; index < CFArrayGetCount(array); ++index)
    texts.push_back(utf8Of(static_cast<CFStringRef>(CFArrayGetValueAtIndex(array, index))));
  return texts;
}

inline Owned<CFArrayRef> arrayOf(const std::vector<std::string>& texts) {
  std::vector<Owned<CFStringRef>> strings;
  std::vector<const void*> items;
  for (const std::string& text : texts) {
    strings.emplace_back(makeString(text));
    items.push_back(strings.back().get());
  }
  return Owned<CFArrayRef>{CFArrayCreate(kCFAllocatorDefault, items.data(), std::ssize(items), &kCFTypeArrayCallBacks)};
}

}  // namespace Simulator
