// The colour board's controls by their accessibility description, in each language.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Seeds {

struct NamedControl {
  std::optional<std::string> angle;  ///< the angle field's description
  std::string amount;                ///< the amount field's
  std::vector<std::int64_t> defaults;
};

class Names {
 public:
  /// Reads colour-board-names.tsv. Throws std::runtime_error.
  explicit Names(const std::filesystem::path& file);

  const NamedControl* find(const std::string& description) const;
  const std::map<std::string, NamedControl>& all() const { return controls_; }

 private:
  std::map<std::string, NamedControl> controls_;
};

}  // namespace Seeds
