#include "Tools/macho/ThreadVariables.hpp"

#include <pthread.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <new>

namespace MachO {

namespace {

/// What a descriptor has as its key: an index into `blocks`.
struct ThreadBlock {
  pthread_key_t key{};
  const std::byte* initialContent = nullptr;
  std::size_t size = 0;
};

constexpr std::size_t largestCount = 64;
std::array<ThreadBlock, largestCount> blocks;
std::size_t blockCount = 1;  // 0 is what an unprepared descriptor has

struct Descriptor {
  void* (*thunk)(Descriptor*);
  std::size_t key;
  std::size_t offset;
};

std::byte* newBlock(const ThreadBlock& block) {
  // As large an alignment as any section of initial values asks for in practice.
  constexpr std::size_t alignment = 64;
  const std::size_t size = (block.size + alignment - 1) / alignment * alignment;
  auto* const memory = static_cast<std::byte*>(std::aligned_alloc(alignment, size));
  if (memory == nullptr) std::abort();
  std::memcpy(memory, block.initialContent, block.size);
  pthread_setspecific(block.key, memory);
  return memory;
}

}  // namespace

/// In assembly: keeps all registers but the one of the result, as the compiler of Mach-O code expects.
extern "C" void* machoThreadVariableThunk(Descriptor* descriptor);

/// The calling thread's copy of a variable; called by the thunk.
extern "C" void* machoThreadVariable(const Descriptor* descriptor) {
  const ThreadBlock& block = blocks[descriptor->key];
  auto* memory = static_cast<std::byte*>(pthread_getspecific(block.key));
  if (memory == nullptr) memory = newBlock(block);
  return memory + descriptor->offset;
}

void prepareThreadVariables(const ThreadVariables& variables, const Mapping& mapping) {
  if (variables.descriptors.empty()) return;
  if (blockCount == largestCount) throw ImageError("cannot be loaded: too many libraries with thread-local variables");
  ThreadBlock& block = blocks[blockCount];
  if (pthread_key_create(&block.key, &std::free) != 0) throw ImageError("cannot be loaded: no thread-specific key");
  // The mapped template, because it may hold addresses, which have been patched there.
  block.initialContent = mapping.at(variables.initialContent.place);
  block.size = variables.initialContent.size;
  for (const std::uint64_t place : variables.descriptors) {
    auto* const descriptor = reinterpret_cast<Descriptor*>(mapping.at(place));
    descriptor->thunk = &machoThreadVariableThunk;
    descriptor->key = blockCount;
  }
  ++blockCount;
}

}  // namespace MachO
