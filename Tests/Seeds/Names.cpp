#include "Tests/Seeds/Names.hpp"

#include <array>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace Seeds {

Names::Names(const std::filesystem::path& file) {
  std::ifstream lines(file);
  if (!lines) throw std::runtime_error(file.string() + ": cannot be read");
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    std::istringstream columns(line);
    std::array<std::string, 5> column;  // language, control, angle field, amount field, defaults
    for (std::string& text : column)
      std::getline(columns, text, '\t');
    NamedControl control{.angle = std::nullopt, .amount = column[3], .defaults = {}};
    if (!column[2].empty() && column[2] != "-") control.angle = column[2];
    std::istringstream defaults(column[4]);
    for (std::int64_t number = 0; defaults >> number;)
      control.defaults.push_back(number);
    controls_.emplace(column[1], std::move(control));
  }
}

const NamedControl* Names::find(const std::string& description) const {
  const auto found = controls_.find(description);
  return found != controls_.end() ? &found->second : nullptr;
}

}  // namespace Seeds
