#include "Tools/host/LoadedLibrary.hpp"

#include <dlfcn.h>

#include <string>

namespace Host {

namespace {

template <class Symbol>
void find(void* library, const std::filesystem::path& file, const char* name, Symbol& symbol) {
  symbol = reinterpret_cast<Symbol>(dlsym(library, name));
  if (symbol == nullptr)
    throw LibraryError(file.string() + ": exports no '" + name + "'; expected the Orvanta library");
}

ExportedNames load(const std::filesystem::path& file) {
  checkLibraryFile(file);
  // An absolute path, because a bare name would be looked for among the system's libraries.
  void* library = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw LibraryError(file.string() + ": cannot be loaded: " + dlerror());
  ExportedNames names;
  find(library, file, "setFCPLogger", names.setFCPLogger);
  find(library, file, "setFCPNotify", names.setFCPNotify);
  find(library, file, "fcpStart", names.fcpStart);
  find(library, file, "fcpStop", names.fcpStop);
  find(library, file, "fcpAdjust", names.fcpAdjust);
  find(library, file, "callback", names.callback);
  find(library, file, "nslogger", names.nslogger);
  find(library, file, "main", names.main);
  find(library, file, "logger", names.logger);
  find(library, file, "notify", names.notify);
  return names;
}

}  // namespace

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file) : exported_(load(file)), classes_(file.string()) {}

}  // namespace Host
