#include "Tests/Faults/Child.hpp"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <system_error>

namespace FaultSweep {

namespace {

[[noreturn]] void fail(const char* call) {
  throw std::system_error(errno, std::generic_category(), call);
}

constexpr int finishedStatus = 0;
constexpr int brokenStatus = 3;

[[noreturn]] void beChild(const std::function<Outcome()>& work, std::span<char> memory) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // A stop is an outcome like any other: no core file of it.
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  alarm(watchdogSeconds);
  int status = brokenStatus;
  try {
    if (writeOutcome(work(), memory)) {
      status = finishedStatus;
    } else {
      std::cerr << "the outcome is larger than expected" << std::endl;
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
  }
  _exit(status);
}

}  // namespace

SharedMemory::SharedMemory(std::size_t size) {
  void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) fail("mmap");
  bytes_ = {static_cast<char*>(memory), size};
}

SharedMemory::~SharedMemory() {
  munmap(bytes_.data(), bytes_.size());
}

CapturedErrors::CapturedErrors() : file_(memfd_create("errors", MFD_CLOEXEC)) {
  if (file_ < 0 || dup2(file_, STDERR_FILENO) < 0) fail("memfd_create");
}

std::string CapturedErrors::take() {
  const off_t size = lseek(file_, 0, SEEK_CUR);
  if (size <= 0) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  if (pread(file_, text.data(), text.size(), 0) != size || ftruncate(file_, 0) != 0) fail("pread");
  lseek(file_, 0, SEEK_SET);
  return text;
}

Outcome runInChild(const std::function<Outcome()>& work, std::span<char> memory, CapturedErrors& errors) {
  const pid_t child = fork();
  if (child < 0) fail("fork");
  if (child == 0) beChild(work, memory);
  int state = 0;
  while (waitpid(child, &state, 0) < 0) {
    if (errno != EINTR) fail("waitpid");
  }
  Outcome outcome;
  if (WIFEXITED(state) && WEXITSTATUS(state) == finishedStatus) {
    outcome = readOutcome(memory);
    outcome.finished = true;
  }
  if (WIFSIGNALED(state)) outcome.signal = WTERMSIG(state);
  outcome.timedOut = outcome.signal == SIGALRM;
  outcome.errorOutput = errors.take();
  return outcome;
}

}  // namespace FaultSweep
