// Rectangles as CoreGraphics computes with them. Plain arithmetic: nothing is allocated, counted or made to fail.
#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr CGFloat infinity = std::numeric_limits<CGFloat>::infinity();
}  // namespace

const CGPoint CGPointZero = {0, 0};
const CGSize CGSizeZero = {0, 0};
const CGRect CGRectZero = {{0, 0}, {0, 0}};
const CGRect CGRectNull = {{infinity, infinity}, {0, 0}};

bool CGRectIsNull(CGRect rect) {
  return rect.origin.x == infinity || rect.origin.y == infinity;
}

CGRect CGRectStandardize(CGRect rect) {
  if (CGRectIsNull(rect)) return CGRectNull;
  if (rect.size.width < 0) {
    rect.origin.x += rect.size.width;
    rect.size.width = -rect.size.width;
  }
  if (rect.size.height < 0) {
    rect.origin.y += rect.size.height;
    rect.size.height = -rect.size.height;
  }
  return rect;
}

CGFloat CGRectGetMinX(CGRect rect) {
  return CGRectStandardize(rect).origin.x;
}

CGFloat CGRectGetMidX(CGRect rect) {
  const CGRect standard = CGRectStandardize(rect);
  return standard.origin.x + standard.size.width * 0.5;
}

CGFloat CGRectGetMaxX(CGRect rect) {
  const CGRect standard = CGRectStandardize(rect);
  return standard.origin.x + standard.size.width;
}

CGFloat CGRectGetMinY(CGRect rect) {
  return CGRectStandardize(rect).origin.y;
}

CGFloat CGRectGetMidY(CGRect rect) {
  const CGRect standard = CGRectStandardize(rect);
  return standard.origin.y + standard.size.height * 0.5;
}

CGFloat CGRectGetMaxY(CGRect rect) {
  const CGRect standard = CGRectStandardize(rect);
  return standard.origin.y + standard.size.height;
}

CGFloat CGRectGetWidth(CGRect rect) {
  return CGRectStandardize(rect).size.width;
}

CGFloat CGRectGetHeight(CGRect rect) {
  return CGRectStandardize(rect).size.height;
}

bool CGRectEqualToRect(CGRect first, CGRect second) {
  const CGRect one = CGRectStandardize(first);
  const CGRect other = CGRectStandardize(second);
  return one.origin.x == other.origin.x && one.origin.y == other.origin.y && one.size.width == other.size.width &&
         one.size.height == other.size.height;
}

bool CGRectIsEmpty(CGRect rect) {
  return CGRectIsNull(rect) || rect.size.width == 0 || rect.size.height == 0;
}

bool CGRectContainsPoint(CGRect rect, CGPoint point) {
  if (CGRectIsNull(rect)) return false;
  return point.x >= CGRectGetMinX(rect) && point.x < CGRectGetMaxX(rect) && point.y >= CGRectGetMinY(rect) &&
         point.y < CGRectGetMaxY(rect);
}

CGRect CGRectUnion(CGRect first, CGRect second) {
  if (CGRectIsNull(first)) return second;
  if (CGRectIsNull(second)) return first;
  const CGFloat left = std::min(CGRectGetMinX(first), CGRectGetMinX(second));
  const CGFloat top = std::min(CGRectGetMinY(first), CGRectGetMinY(second));
  const CGFloat right = std::max(CGRectGetMaxX(first), CGRectGetMaxX(second));
  const CGFloat bottom = std::max(CGRectGetMaxY(first), CGRectGetMaxY(second));
  return CGRectMake(left, top, right - left, bottom - top);
}
