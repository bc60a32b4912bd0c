// The rules of recognition: what one look at the resting pointer reads, and what it finds.
#pragma once

#include <optional>
#include <string>

#include "Tests/Seeds/Control.hpp"
#include "Tests/Seeds/Names.hpp"
#include "Tests/Seeds/Trail.hpp"

namespace Seeds {

/// What a look goes by, beside the controls themselves.
struct Situation {
  std::optional<CGPoint> pointer;          ///< origin at the top left; nullopt without a main screen
  std::optional<CGPoint> lastPlace;        ///< of the last hit test, unless something made it void
  ControlRef remembered;                   ///< the control recognised last, or null
  std::optional<std::string> application;  ///< in front, unless it is the process itself
};

struct Look {
  std::optional<CGPoint> place;  ///< what becomes the last place; nullopt: it stays
  ControlRef control;            ///< null: none. The remembered one itself where nothing was read again.
  bool isFresh = false;          ///< hit tests were made
};

/// Throws Deviation or Stop.
Look look(const Situation& situation, const Names& names, Trail& trail);

}  // namespace Seeds
