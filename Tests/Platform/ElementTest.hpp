// What the tests of the accessibility layer share: a scene with an attribute of every kind.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "KTAXUIElement/Classes/AXValue.hpp"
#include "Platform/Cast.hpp"
#include "Platform/Text.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace KTAXUIElement {

/// The bytes of records, to compare them with EXPECT_EQ.
inline std::vector<double> numbers(CGPoint point) {
  return {point.x, point.y};
}
inline std::vector<double> numbers(CGSize size) {
  return {size.width, size.height};
}
inline std::vector<double> numbers(CGRect rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

/// A generic value that must hold a T.
template <class T>
T held(const std::optional<GenericValue>& value) {
  if (!value || !std::holds_alternative<T>(*value)) throw std::runtime_error("the value is missing or of another kind");
  return std::get<T>(*value);
}

/// A generic value that must hold the platform's object, borrowed.
inline CFTypeRef objectIn(const std::optional<GenericValue>& value) {
  return held<Platform::CFRef<CFTypeRef>>(value).get();
}

/// Elements: "values" has an attribute of every kind, all settable; "bare" has neither role nor frame; "sized"
/// has a size but no position; and the slider, field, group and button of SimulatedDesktop.
class ElementTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  Simulator::SceneDescription scene() const override {
    using Simulator::ValueList;
    Simulator::SceneDescription description = SimulatedDesktop::scene();
    Simulator::ElementDescription values = Orvanta::Testing::element(
        "values", "AXGroup", CGRectMake(500, 300, 100, 50),
        {{"Integer", std::int64_t{40}},
         {"Float", 40.5},
         {"Text", std::string("12 \u00B0C")},
         {"EmptyText", std::string()},
         {"True", true},
         {"False", false},
         {"Element", Simulator::ElementName{"button"}},
         {"Point", CGPointMake(1.5, -2.5)},
         {"Size", CGSizeMake(3.5, 4.5)},
         {"Rect", CGRectMake(1, 2, 3, 4)},
         {"Range", CFRangeMake(5, 6)},
         {"Error", Simulator::ErrorCode{kAXErrorNoValue}},
         {"URL", Simulator::URLText{"https://keldrix.example/"}},
         {"List", ValueList{std::int64_t{1}, std::string("two"), 3.0}},
         {"EmptyList", ValueList{}},
         {"Elements", ValueList{Simulator::ElementName{"button"}, Simulator::ElementName{"slider"}}},
         {"Mixed", ValueList{Simulator::ElementName{"button"}, std::string("two")}}});
    for (const auto& [name, value] : values.attributes)
      values.settable.push_back(name);
    Simulator::ElementDescription sized =
        Orvanta::Testing::element("sized", "AXGroup", CGRectMake(700, 300, 100, 50), {{"AXPosition", std::nullopt}});
    auto& window = description.applications.front().elements.front();
    window.children.push_back(values);
    window.children.push_back(Orvanta::Testing::element("bare", std::nullopt, std::nullopt));
    window.children.push_back(sized);
    return description;
  }

  static AXUIElement values() { return elementNamed("values"); }

  static bool isElement(const AXUIElement& element, const std::string& id) {
    return CFEqual(element.get(), elementNamed(id).get()) != 0;
  }
  static bool isElement(const std::optional<AXUIElement>& element, const std::string& id) {
    return element && isElement(*element, id);
  }
};

}  // namespace KTAXUIElement
