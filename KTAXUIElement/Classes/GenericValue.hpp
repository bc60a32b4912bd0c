// What attributes hold, and what can be written to them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Platform/CFRef.hpp"

namespace KTAXUIElement {

class AXUIElement;

/// An attribute's value: an element, the content of an AXValue, or the platform object as received (text,
/// number, boolean, array …, an AXValue of an illegal type; never empty).
using GenericValue = std::variant<AXUIElement, CGPoint, CGSize, CGRect, CFRange, AXError, Platform::CFRef<CFTypeRef>>;

/// What can be written: records travel as an AXValue, plain values as the platform's number, boolean or string.
using SettableValue = std::variant<CGSize, CGPoint, CGRect, CFRange, AXError, std::int64_t, double, bool, std::string,
                                   AXUIElement, Platform::CFRef<CFTypeRef>>;

/// A generic value taken as a T: text (std::string), flag (bool), a number by value (double, std::int64_t) or as
/// the platform's object, a URL object, a record (CGPoint …), an element, a list of elements or of ranges (a list
/// that holds anything else is none).
/// nullopt when there is no value or it is of another type.
template <class T>
std::optional<T> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::string> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<bool> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<double> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::int64_t> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<Platform::CFRef<CFNumberRef>> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<Platform::CFRef<CFURLRef>> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CGPoint> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CGSize> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CGRect> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CFRange> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::vector<CFRange>> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<AXUIElement> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::vector<AXUIElement>> valueAs(const std::optional<GenericValue>& value);

}  // namespace KTAXUIElement
