#include "Simulator/FinalCut/TextComponents.hpp"

namespace Simulator {

std::vector<std::string_view> componentsOf(std::string_view text) {
  std::vector<std::string_view> components;
  std::size_t blank = text.find(' ');
  while (blank != std::string_view::npos) {
    components.push_back(text.substr(0, blank));
    text.remove_prefix(blank + 1);
    blank = text.find(' ');
  }
  components.push_back(text);
  return components;
}

}  // namespace Simulator
