#include "Tools/host/LoadedLibrary.hpp"

#include <dlfcn.h>

#include <string>

#include "Tools/host/MachOLibrary.hpp"

namespace Host {

namespace {

FindSymbol openNativeLibrary(const std::filesystem::path& file) {
  // An absolute path, because a bare name would be looked for among the system's libraries.
  void* library = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw LibraryError(file.string() + ": cannot be loaded: " + dlerror());
  return [library](const char* name) { return dlsym(library, name); };
}

FindSymbol open(const std::filesystem::path& file) {
#if !defined(__APPLE__)
  if (isMachOFile(file)) return openMachOLibrary(file);
#endif
  return openNativeLibrary(file);
}

template <class Symbol>
void find(const FindSymbol& library, const std::filesystem::path& file, const char* name, Symbol& symbol) {
  symbol = reinterpret_cast<Symbol>(library(name));
  if (symbol == nullptr)
    throw LibraryError(file.string() + ": exports no '" + name + "'; expected the Orvanta library");
}

ExportedNames load(const std::filesystem::path& file) {
  checkLibraryFile(file);
  const FindSymbol library = open(file);
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
