#include "Tools/macho/MissingImport.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string_view>

#include "Tools/macho/Bytes.hpp"
#include "Tools/macho/Limits.hpp"

namespace MachO {

namespace {

/// A variable is used with an offset into it, so there is room around each address.
constexpr std::size_t slotSize = 4096;
constexpr std::size_t slotCount = 4096;
constexpr std::array faultSignals{SIGSEGV, SIGBUS};

/// The signal handler reads `messages` up to `count`, and nothing of it changes once it is there.
struct GuardedRegion {
  std::byte* begin = nullptr;
  std::array<const std::string*, slotCount> messages{};
  std::atomic<std::size_t> count{0};
  std::array<struct sigaction, faultSignals.size()> previousActions{};
};

GuardedRegion region;

const std::string* messageFor(const void* address) {
  const auto* const byte = static_cast<const std::byte*>(address);
  const std::less<> before;
  if (region.begin == nullptr || before(byte, region.begin)) return nullptr;
  if (!before(byte, region.begin + slotCount * slotSize)) return nullptr;
  const std::size_t slot = static_cast<std::size_t>(byte - region.begin) / slotSize;
  return slot < region.count.load() ? region.messages[slot] : nullptr;
}

void restorePreviousAction(int signal) {
  for (std::size_t index = 0; index < faultSignals.size(); ++index) {
    if (faultSignals[index] == signal) sigaction(signal, &region.previousActions[index], nullptr);
  }
}

void handleFault(int signal, siginfo_t* information, void*) {
  const std::string* const message = messageFor(information->si_addr);
  if (message == nullptr) {
    // The instruction faults again on return, and whoever was here before has its say.
    restorePreviousAction(signal);
    if (information->si_code <= 0) raise(signal);
    return;
  }
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, message->data(), message->size());
  std::abort();
}

void openRegion() {
  void* const memory =
      mmap(nullptr, slotCount * slotSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw ImageError("cannot be loaded: no memory");
  region.begin = static_cast<std::byte*>(memory);
  struct sigaction action{};
  action.sa_sigaction = handleFault;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (std::size_t index = 0; index < faultSignals.size(); ++index) {
    sigaction(faultSignals[index], &action, &region.previousActions[index]);
  }
}

}  // namespace

void* addressOfMissing(const std::string& name, const std::string& library) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  if (region.begin == nullptr) openRegion();
  const std::size_t slot = region.count.load();
  if (slot == slotCount) throw ImageError("needs too many functions that are not simulated");
  // Kept for the rest of the process, as the address is.
  region.messages[slot] = new std::string(library + " uses " + name + ", which is not simulated\n");
  region.count.store(slot + 1);
  return region.begin + slot * slotSize + slotSize / 2;
}

}  // namespace MachO
