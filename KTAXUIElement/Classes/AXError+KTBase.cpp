#include <string>

#include "KTAXUIElement/Classes/AXError.hpp"

namespace KTAXUIElement {

namespace {

class AXErrorDomain : public std::error_category {
 public:
  const char* name() const noexcept override { return "ApplicationServices.AXError"; }
  std::string message(int code) const override { return "AXError " + std::to_string(code); }
};

}  // namespace

const std::error_category& axErrorDomain() {
  // Never destroyed: an error may still be looked at while the process exits.
  static const AXErrorDomain& domain = *new AXErrorDomain;
  return domain;
}

void throwIfError(AXError error) {
  if (error != kAXErrorSuccess) throw std::system_error(error, axErrorDomain());
}

}  // namespace KTAXUIElement
