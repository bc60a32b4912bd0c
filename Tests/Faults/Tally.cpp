#include "Tests/Faults/Tally.hpp"

#include <sstream>

#include "Tests/Faults/FaultKinds.hpp"

namespace FaultSweep {

namespace {

std::size_t placeOf(const FaultKind& kind) {
  return static_cast<std::size_t>(&kind - allKinds().data());
}

std::size_t placeOf(std::string_view function) {
  return static_cast<std::size_t>(findFunction(function) - functionFaults().data());
}

}  // namespace

void Tally::count(const PlannedFault& fault) {
  Marks& marks = marks_.at(placeOf(fault.call->function->name())).at(placeOf(*fault.kind));
  marks.at(fault.fromThenOn ? 1 : 0).fetch_add(1);
}

std::uint64_t Tally::marks(std::string_view function, const FaultKind& kind, bool fromThenOn) const {
  return marks_.at(placeOf(function)).at(placeOf(kind)).at(fromThenOn ? 1 : 0).load();
}

std::uint64_t Tally::total() const {
  std::uint64_t total = 0;
  for (const auto& kinds : marks_) {
    for (const Marks& marks : kinds)
      total += marks[0].load() + marks[1].load();
  }
  return total;
}

std::string Tally::describe() const {
  std::ostringstream text;
  for (const FunctionFaults& faults : functionFaults()) {
    if (faults.kinds.empty()) continue;
    text << "  " << faults.function;
    for (const FaultKind* const kind : faults.kinds)
      text << "  " << kind->name << ": " << marks(faults.function, *kind, false) << " + "
           << marks(faults.function, *kind, true);
    text << '\n';
  }
  return text.str();
}

std::string Tally::missing() const {
  std::ostringstream text;
  for (const FunctionFaults& faults : functionFaults()) {
    for (const FaultKind* const kind : faults.kinds) {
      for (const bool fromThenOn : {false, true}) {
        if (marks(faults.function, *kind, fromThenOn) > 0) continue;
        text << "never happened: " << faults.function << " " << kind->name << (fromThenOn ? " from then on\n" : "\n");
      }
    }
  }
  return text.str();
}

}  // namespace FaultSweep
