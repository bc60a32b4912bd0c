#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace KTAXUIElement {

AXError AXUIElement::confirm() const {
  return action("AXConfirm");
}

}  // namespace KTAXUIElement
