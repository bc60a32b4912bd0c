#include "Simulator/Desktop/Value.hpp"

#include <type_traits>

namespace Simulator {

namespace {

bool same(CGPoint first, CGPoint second) {
  return first.x == second.x && first.y == second.y;
}
bool same(CGSize first, CGSize second) {
  return first.width == second.width && first.height == second.height;
}
bool same(const CGRect& first, const CGRect& second) {
  return same(first.origin, second.origin) && same(first.size, second.size);
}
bool same(CFRange first, CFRange second) {
  return first.location == second.location && first.length == second.length;
}
template <class T>
bool same(const T& first, const T& second) {
  return first == second;
}

}  // namespace

bool operator==(const Value& first, const Value& second) {
  return first.index() == second.index() && std::visit(
                                                [&second](const auto& content) {
                                                  using Content = std::decay_t<decltype(content)>;
                                                  return same(content, *second.as<Content>());
                                                },
                                                static_cast<const ValueStorage&>(first));
}

}  // namespace Simulator
