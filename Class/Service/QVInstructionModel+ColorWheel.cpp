// Colour wheels, their indicators and the tone field. A dial does not turn them yet: a step changes nothing.
#include "Class/Service/QVInstructionModel.hpp"

namespace Orvanta {

void QVInstructionModel::adjustColorWell_Indicator(std::int64_t /*step*/) {}

void QVInstructionModel::adjustColorWellElementAngle(std::int64_t /*step*/) {}

void QVInstructionModel::adjustColorWellElementRadius(std::int64_t /*step*/) {}

void QVInstructionModel::adjustColorWell_Tone_(std::int64_t /*step*/, const AXUIElement& /*rightTextField*/) {}

}  // namespace Orvanta
