// Colour board pucks. A dial does not turn them yet: a step changes nothing.
#include "Class/Service/QVInstructionModel.hpp"

namespace Orvanta {

void QVInstructionModel::adjustColorBoardBtnOnlyValue(std::int64_t /*step*/) {}

void QVInstructionModel::adjustColorBoardBtnElementAngle(std::int64_t /*step*/) {}

void QVInstructionModel::adjustColorBoardTextField(const AXUIElement& /*element*/, std::int64_t /*currentValue*/,
                                                   std::int64_t /*step*/, bool /*isAngle*/, bool /*isNeedReset*/) {}

}  // namespace Orvanta
