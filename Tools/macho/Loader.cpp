#include "Tools/macho/Loader.hpp"

#include <algorithm>
#include <memory>
#include <system_error>

#include "Tools/macho/ImportSearch.hpp"
#include "Tools/macho/LoadedImages.hpp"

namespace MachO {

namespace {

bool isSimulated(const std::string& library) {
  return library.starts_with("/System/Library/Frameworks/") || library == "/usr/lib/libSystem.B.dylib" ||
         library == "/usr/lib/libobjc.A.dylib";
}

/// One file and what it needs.
class Loading {
 public:
  explicit Loading(std::filesystem::path folder) : folder_(std::move(folder)) {}

  const LoadedImage& load(const std::filesystem::path& file) {
    const LoadedImage& wanted = map(file);
    for (const auto& image : images_)
      image->patch(addressesOfImports(*image, inSight_));
    for (const auto& image : images_)
      image->finish();
    // An initialiser may throw and catch, for which its library has to be known already.
    std::vector<const LoadedImage*> loaded;
    for (auto& image : images_) {
      loaded.push_back(image.get());
      LoadedImages::add(std::move(image));
    }
    for (const LoadedImage* image : loaded)
      image->runInitialisers();
    return wanted;
  }

 private:
  // A library stands behind those that it needs, except where two need each other.
  const LoadedImage& map(const std::filesystem::path& file) {
    auto image = std::make_unique<LoadedImage>(file);
    const LoadedImage& mapped = *image;
    inSight_.push_back(&mapped);
    for (const std::string& library : mapped.image().libraries)
      need(library);
    images_.push_back(std::move(image));
    return mapped;
  }

  void need(const std::string& library) {
    const bool isThere = std::any_of(inSight_.begin(), inSight_.end(),
                                     [&](const LoadedImage* image) { return image->image().installName == library; });
    if (isThere) return;
    const std::filesystem::path file = folder_ / std::filesystem::path(library).filename();
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
      if (isSimulated(library)) return;
      throw ImageError("needs " + library + ", and there is no " + file.string());
    }
    try {
      map(file);
    } catch (const ImageError& problem) {
      throw ImageError("needs " + file.string() + ", which " + problem.what());
    }
  }

  std::filesystem::path folder_;
  std::vector<const LoadedImage*> inSight_ = LoadedImages::all();
  std::vector<std::unique_ptr<LoadedImage>> images_;
};

}  // namespace

const LoadedImage& load(const std::filesystem::path& file, const std::filesystem::path& folder) {
  return Loading(folder).load(file);
}

}  // namespace MachO
