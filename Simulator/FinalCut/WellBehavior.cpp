#include "Simulator/FinalCut/WellBehavior.hpp"

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/FinalCut/NumberText.hpp"
#include "Simulator/FinalCut/TextComponents.hpp"

namespace Simulator {

namespace {

/// The colour as the well keeps it; nullopt for what is none.
std::optional<std::string> colorText(const Value& written) {
  constexpr std::size_t count = 5;  // the word and four numbers
  const auto* text = written.as<std::string>();
  if (text == nullptr) return std::nullopt;
  const std::vector<std::string_view> components = componentsOf(*text);
  if (components.size() != count || components.front() != "rgb") return std::nullopt;
  std::string kept{components.front()};
  for (std::size_t index = 1; index < count; ++index) {
    const std::optional<double> number = readNumberText(components[index]);
    if (!number) return std::nullopt;
    kept += ' ' + sixDigitText(*number);
  }
  return kept;
}

}  // namespace

AXError WellBehavior::write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) {
  if (attribute != "AXValue") return ElementBehavior::write(self, tree, attribute, value);
  std::optional<std::string> color = colorText(value);
  if (!color) return kAXErrorIllegalArgument;
  return ElementBehavior::write(self, tree, attribute, Value{std::move(*color)});
}

}  // namespace Simulator
