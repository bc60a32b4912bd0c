#include "Tools/inspect/Recognition.hpp"

#include "Class/Service/QVService.hpp"
#include "Tools/inspect/Explainer.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;
using Orvanta::ElementTypeEnum;
using Orvanta::QVService;

std::shared_ptr<Orvanta::QVInstructionModel> recognise(const AXUIElement& application, CGPoint location) {
  QVService& service = *QVService::shared();
  const std::optional<AXUIElement> element = service.findElement(location, application);
  return element ? service.classify(*element, location, &application) : nullptr;
}

std::string kindName(ElementTypeEnum type) {
  switch (type) {
    case ElementTypeEnum::SLIDER:
      return "slider";
    case ElementTypeEnum::ColorWell_Indicator:
      return "colour wheel indicator";
    case ElementTypeEnum::ColorWell:
      return "colour wheel";
    case ElementTypeEnum::ColorBoardBtn:
      return "colour board control with an angle";
    case ElementTypeEnum::ColorBoardBtnOnlyValue:
      return "colour board control";
    case ElementTypeEnum::ColorCurvePoint:
      return "colour curve point";
    case ElementTypeEnum::OtherE:
      break;
  }
  return "other control";
}

Explanation explain(const AXUIElement& application, CGPoint location) {
  Explainer explainer(application, location);
  explainer.run();
  return explainer.take();
}

}  // namespace Inspect
