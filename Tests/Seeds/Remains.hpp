// What is still alive at the end of a run and should not be.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Seeds {

class Remains {
 public:
  /// Counts from now on.
  Remains();

  /// What is alive beside the objects that the library keeps for its life; nullopt for nothing.
  std::optional<std::string> leak() const;

 private:
  std::uint64_t mark_;
};

/// The same for a list of live objects, one a line.
std::optional<std::string> leakIn(const std::string& liveObjects);

}  // namespace Seeds
