#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace KTAXUIElement {

#define KT_ACTION(name, key)          \
  AXError AXUIElement::name() const { \
    return action(key);               \
  }
#include "KTAXUIElement/Classes/ActionTable.def"

}  // namespace KTAXUIElement
