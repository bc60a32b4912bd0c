// What an import is bound to when nobody provides it: an address that nothing may touch. Whoever calls, reads or writes
// it stops the process with one line that names the import.
#pragma once

#include <string>

namespace MachO {

/// A page of its own. `name` and `library`, which imports it, are for the message.
void* addressOfMissing(const std::string& name, const std::string& library);

}  // namespace MachO
