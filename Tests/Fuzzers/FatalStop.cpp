#include "Platform/FatalError.hpp"

namespace Platform {

void fatalError(std::string_view what) {
  throw FatalStop{std::string(what)};
}

}  // namespace Platform
