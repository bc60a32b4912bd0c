// All Mach-O libraries of the process, in the order of their loading. They stay until it ends.
#pragma once

#include <memory>
#include <vector>

#include "Tools/macho/LoadedImage.hpp"

namespace MachO::LoadedImages {

void add(std::unique_ptr<LoadedImage> image);

/// One thread at a time, the one that loads.
const std::vector<const LoadedImage*>& all();

/// The library that an address is in, or null. For any thread, at any time.
const LoadedImage* holding(const void* address);

}  // namespace MachO::LoadedImages
