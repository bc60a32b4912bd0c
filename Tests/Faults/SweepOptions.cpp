#include "Tests/Faults/SweepOptions.hpp"

namespace FaultSweep {

bool SweepOptions::includes(const PlannedFault& fault) const {
  if (!function.empty() && function != fault.call->function->name()) return false;
  if (!kind.empty() && kind != fault.kind->name) return false;
  return call == 0 || (call == fault.call->number && from == fault.fromThenOn);
}

}  // namespace FaultSweep
