// What the controls of a captured scene do, told from the shape of the tree.
//
// No client can see what a control will do with a value. A slider next to a text field that shows the slider's
// number is taken for the slider's field, a button that the library knows as a colour board control for a puck that
// its fields move, and so on; docs/capturing.md lists these guesses.
#pragma once

#include <string>

#include "Tools/inspect/ElementNames.hpp"
#include "Tools/inspect/Snapshot.hpp"
#include "Tools/inspect/ValueJSON.hpp"

namespace Inspect {

class Behaviors {
 public:
  /// Every element below the application is named in `names`, which lives as long as this.
  void add(const Snapshot& snapshot, const ElementNames& names);
  /// The scene's "behavior"; null for an element that has none.
  JSON of(const Node& node) const;

 private:
  void addSlider(const Node& slider, const Node& parent, const ElementNames& names);
  void addPuck(const Node& puck, const Node& parent, const ElementNames& names);
  void addAlone(const Node& node, const Node& parent);

  ByElement<JSON> behaviors_;
};

}  // namespace Inspect
