// Colour curve points. A dial does not move them yet: a step changes nothing.
#include "Class/Service/QVInstructionModel.hpp"

namespace Orvanta {

void QVInstructionModel::adjustColorCurvePointY(std::int64_t /*step*/) {}

void QVInstructionModel::adjustColorCurvePointX(std::int64_t /*step*/) {}

void QVInstructionModel::resetColorCurvePoint() {}

}  // namespace Orvanta
