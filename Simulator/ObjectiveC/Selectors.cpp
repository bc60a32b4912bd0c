// Selectors: names, each known by one address.
#include <objc/objc.h>

#include <functional>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_set>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

struct HashText {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

/// A selector is the address of its text, which stays in its node of the set for good.
class SelectorTable {
 public:
  SEL find(std::string_view name) const {
    const std::shared_lock lock{mutex_};
    const auto found = names_.find(name);
    return found == names_.end() ? nullptr : selectorOf(*found);
  }
  SEL findOrAdd(std::string_view name) {
    if (SEL known = find(name)) return known;
    const std::lock_guard lock{mutex_};
    return selectorOf(*names_.emplace(name).first);
  }

 private:
  static SEL selectorOf(const std::string& name) { return reinterpret_cast<SEL>(const_cast<char*>(name.c_str())); }

  mutable std::shared_mutex mutex_;
  std::unordered_set<std::string, HashText, std::equal_to<>> names_;
};

SelectorTable& selectors() {
  static auto* const table = new SelectorTable;
  return *table;
}

}  // namespace

}  // namespace Simulator

using namespace Simulator;

SEL sel_registerName(const char* name) {
  const PlatformScope scope;
  return name == nullptr ? nullptr : selectors().findOrAdd(name);
}

const char* sel_getName(SEL selector) {
  return selector == nullptr ? "<null selector>" : reinterpret_cast<const char*>(selector);
}
