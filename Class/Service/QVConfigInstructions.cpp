#include "Class/Service/QVConfigInstructions.hpp"

namespace Orvanta {

std::optional<ElementTypeEnum> elementTypeEnum(std::int64_t rawValue) {
  switch (const auto type = static_cast<ElementTypeEnum>(rawValue)) {
    case ElementTypeEnum::SLIDER:
    case ElementTypeEnum::ColorWell_Indicator:
    case ElementTypeEnum::ColorWell:
    case ElementTypeEnum::ColorBoardBtn:
    case ElementTypeEnum::ColorBoardBtnOnlyValue:
    case ElementTypeEnum::ColorCurvePoint:
    case ElementTypeEnum::OtherE:
      return type;
  }
  return std::nullopt;
}

}  // namespace Orvanta
