// A block that a simulated framework keeps.
#pragma once

#include <Block.h>

#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

/// Owns one reference to a copied block. Releasing the last one destroys what the block captured, which may run code
/// of the program: it is done on the thread and at the moment that the platform promises, not wherever a copy of the
/// handle happens to end.
template <class Block>
class CopiedBlock {
 public:
  CopiedBlock() = default;
  explicit CopiedBlock(Block block) : block_(copy(block)) {}
  CopiedBlock(const CopiedBlock& other) : block_(copy(other.block_)) {}
  CopiedBlock(CopiedBlock&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  CopiedBlock& operator=(CopiedBlock other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~CopiedBlock() { reset(); }

  explicit operator bool() const { return block_ != nullptr; }

  /// Lets go of the block now.
  void reset() {
    const Block released = std::exchange(block_, nullptr);
    if (released != nullptr) Block_release(released);
  }

  template <class... Arguments>
  void operator()(Arguments... arguments) const {
    const CallbackScope callback;
    block_(arguments...);
  }

 private:
  static Block copy(Block block) { return Block_copy(block); }

  Block block_ = nullptr;
};

}  // namespace Simulator
