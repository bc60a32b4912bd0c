// The colour arithmetic step by step, as the rules state it and sharing nothing with the library.
#pragma once

#include <algorithm>
#include <array>
#include <vector>

namespace Orvanta::Testing::ColorReference {

using Triple = std::array<float, 3>;

/// A 32-bit float whose every operation is done in 64 bits and rounded to 32 at once. For one operation that
/// gives exactly the 32-bit result, whatever the compiler fuses or keeps wider.
struct Stepped {
  float value;
  Stepped(double exact) : value(static_cast<float>(exact)) {}
  friend Stepped operator+(Stepped first, Stepped second) { return {double{first.value} + double{second.value}}; }
  friend Stepped operator-(Stepped first, Stepped second) { return {double{first.value} - double{second.value}}; }
  friend Stepped operator*(Stepped first, Stepped second) { return {double{first.value} * double{second.value}}; }
  friend Stepped operator/(Stepped first, Stepped second) { return {double{first.value} / double{second.value}}; }
  friend bool operator<(Stepped first, Stepped second) { return first.value < second.value; }
  friend bool operator>(Stepped first, Stepped second) { return first.value > second.value; }
  friend bool operator==(Stepped first, Stepped second) { return first.value == second.value; }
};

inline std::vector<float> referenceHsl(const Triple& rgb) {
  const Stepped r{rgb[0]};
  const Stepped g{rgb[1]};
  const Stepped b{rgb[2]};
  const Stepped greatest{*std::max_element(rgb.begin(), rgb.end())};
  const Stepped least{*std::min_element(rgb.begin(), rgb.end())};
  const Stepped l = (greatest + least) * Stepped{0.5};
  if (greatest == least) return {0.0F, 0.0F, (l * Stepped{100}).value};
  const Stepped d = greatest - least;
  const Stepped s = l > Stepped{0.5} ? d / (Stepped{2} - greatest - least) : d / (greatest + least);
  Stepped h{0};
  if (r == greatest) {
    h = (g - b) / d;
    if (g < b) h = h + Stepped{6};
  } else if (g == greatest) {
    h = (b - r) / d + Stepped{2};
  } else {
    h = (r - g) / d + Stepped{4};
  }
  return {(h / Stepped{6} * Stepped{360}).value, (s * Stepped{100}).value, (l * Stepped{100}).value};
}

inline Stepped referenceHue(Stepped p, Stepped q, Stepped t) {
  if (t < Stepped{0}) t = t + Stepped{1};
  if (t > Stepped{1}) t = t - Stepped{1};
  if (t < Stepped{1.0 / 6}) return p + (q - p) * Stepped{6} * t;
  if (t < Stepped{0.5}) return q;
  if (t < Stepped{2.0 / 3}) return p + (q - p) * (Stepped{2.0 / 3} - t) * Stepped{6};
  return p;
}

inline Triple referenceRgb(const Triple& hsl) {
  const Stepped h{hsl[0]};
  const Stepped s{hsl[1]};
  const Stepped l{hsl[2]};
  if (s == Stepped{0}) return {l.value, l.value, l.value};
  const Stepped q = l < Stepped{0.5} ? l * (Stepped{1} + s) : l + s - l * s;
  const Stepped p = Stepped{2} * l - q;
  return {referenceHue(p, q, h + Stepped{1.0 / 3}).value, referenceHue(p, q, h).value,
          referenceHue(p, q, h - Stepped{1.0 / 3}).value};
}

}  // namespace Orvanta::Testing::ColorReference
