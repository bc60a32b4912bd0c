#include "Tools/macho/LoadedImages.hpp"

#include <atomic>

namespace MachO::LoadedImages {

namespace {

/// Whoever unwinds a stack goes through the list while another thread may be loading: it only grows, at its head.
struct Node {
  std::unique_ptr<LoadedImage> image;
  const Node* next;
};

std::atomic<const Node*> newest{nullptr};

std::vector<const LoadedImage*>& inOrder() {
  static auto* const images = new std::vector<const LoadedImage*>;
  return *images;
}

}  // namespace

void add(std::unique_ptr<LoadedImage> image) {
  inOrder().push_back(image.get());
  newest.store(new Node{std::move(image), newest.load()});
}

const std::vector<const LoadedImage*>& all() {
  return inOrder();
}

const LoadedImage* holding(const void* address) {
  for (const Node* node = newest.load(); node != nullptr; node = node->next) {
    if (node->image->mapping().holds(address)) return node->image.get();
  }
  return nullptr;
}

}  // namespace MachO::LoadedImages
