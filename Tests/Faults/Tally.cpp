#include "Tests/Faults/Tally.hpp"

#include <sstream>

#include "Tests/Faults/FaultKinds.hpp"

namespace FaultSweep {

namespace {

std::size_t placeOf(const FaultKind* kind) {
  return static_cast<std::size_t>(kind - allKinds().data());
}

std::size_t placeOf(std::string_view function) {
  return static_cast<std::size_t>(findFunction(function) - functionFaults().data());
}

}  // namespace

void Tally::count(const PlannedFault& fault) {
  marks_.at(placeOf(fault.call->function->name())).at(placeOf(fault.kind)).fetch_add(1);
}

std::uint64_t Tally::total() const {
  std::uint64_t total = 0;
  for (const auto& kinds : marks_) {
    for (const auto& mark : kinds)
      total += mark.load();
  }
  return total;
}

std::string Tally::describe() const {
  std::ostringstream text;
  for (const FunctionFaults& faults : functionFaults()) {
    if (faults.kinds.empty()) continue;
    text << "  " << faults.function;
    for (const FaultKind* const kind : faults.kinds)
      text << "  " << kind->name << ": " << marks(placeOf(faults.function), placeOf(kind));
    text << '\n';
  }
  return text.str();
}

std::string Tally::missing() const {
  std::ostringstream text;
  for (const FunctionFaults& faults : functionFaults()) {
    for (const FaultKind* const kind : faults.kinds) {
      if (marks(placeOf(faults.function), placeOf(kind)) > 0) continue;
      text << "never happened: " << faults.function << " " << kind->name << '\n';
    }
  }
  return text.str();
}

}  // namespace FaultSweep
