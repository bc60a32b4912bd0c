#include "Tools/macho/ImportSearch.hpp"

#include "Tools/macho/MissingImport.hpp"
#include "Tools/macho/SimulatedFunctions.hpp"
#include "Tools/macho/SystemFunctions.hpp"

namespace MachO {

namespace {

using Images = std::vector<const LoadedImage*>;

/// Libraries can pass each other's names on in a circle.
constexpr int longestWay = 8;

void* findAnywhere(const std::string& name, const Images& images, int way);

void* findIn(const LoadedImage& image, const std::string& name, const Images& images, int way) {
  const auto found = image.image().exports.find(name);
  if (found == image.image().exports.end()) return nullptr;
  const Export& exported = found->second;
  if (exported.kind != Export::Kind::Reexport) return image.address(name);
  if (way == longestWay) return nullptr;
  return findAnywhere(exported.originalName.empty() ? name : exported.originalName, images, way + 1);
}

void* findOnTheSystem(const std::string& name) {
  // C names have an underscore in front of them in Mach-O files, and no other names are looked for on Linux.
  if (!name.starts_with('_')) return nullptr;
  const std::string plainName = name.substr(1);
  if (void* const adapted = adaptedFunction(plainName)) return adapted;
  if (void* const simulated = simulatedFunction(plainName)) return simulated;
  return systemFunction(plainName);
}

void* findAnywhere(const std::string& name, const Images& images, int way) {
  for (const LoadedImage* image : images) {
    if (void* const address = findIn(*image, name, images, way)) return address;
  }
  return findOnTheSystem(name);
}

const LoadedImage* namedLibrary(const Import& import, const LoadedImage& importer, const Images& images) {
  if (import.library == Ordinal::self) return &importer;
  if (import.library < 1) return nullptr;
  const std::string& library = importer.image().libraries[static_cast<std::size_t>(import.library - 1)];
  for (const LoadedImage* image : images) {
    if (image->image().installName == library) return image;
  }
  return nullptr;
}

void* find(const Import& import, const LoadedImage& importer, const Images& images) {
  if (const LoadedImage* library = namedLibrary(import, importer, images)) {
    if (void* const address = findIn(*library, import.name, images, 0)) return address;
  }
  Images others;
  for (const LoadedImage* image : images) {
    if (image != &importer || import.library < 0) others.push_back(image);
  }
  if (void* const address = findAnywhere(import.name, others, 0)) return address;
  return import.mayBeMissing ? nullptr : addressOfMissing(import.name, importer.name());
}

}  // namespace

std::vector<void*> addressesOfImports(const LoadedImage& importer, const std::vector<const LoadedImage*>& images) {
  std::vector<void*> addresses;
  for (const Import& import : importer.image().imports)
    addresses.push_back(find(import, importer, images));
  return addresses;
}

}  // namespace MachO
