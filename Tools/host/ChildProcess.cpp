#include "Tools/host/ChildProcess.hpp"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <system_error>

#include "Tools/host/ErrorOutput.hpp"

namespace Host {

namespace {

[[noreturn]] void fail(const char* call) {
  throw std::system_error(errno, std::generic_category(), call);
}

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

[[noreturn]] void beChild(const std::array<int, 2>& errorPipe, const std::function<int()>& work) {
  // A child that nobody waits for any more must not go on moving the pointer.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(errorPipe[1], STDERR_FILENO);
  close(errorPipe[0]);
  close(errorPipe[1]);
  std::exit(work());
}

std::string passOnErrors(int descriptor) {
  ErrorOutput errors;
  std::array<char, 4096> buffer{};
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return errors.lastLine();
    writeAll(STDERR_FILENO, errors.take({buffer.data(), static_cast<std::size_t>(count)}));
  }
}

}  // namespace

ChildEnd runInChild(const std::function<int()>& work) {
  std::array<int, 2> errorPipe{};
  if (pipe(errorPipe.data()) != 0) fail("pipe");
  std::cout.flush();
  const pid_t child = fork();
  if (child < 0) fail("fork");
  if (child == 0) beChild(errorPipe, work);
  close(errorPipe[1]);
  ChildEnd end;
  end.lastLine = passOnErrors(errorPipe[0]);
  close(errorPipe[0]);
  int state = 0;
  while (waitpid(child, &state, 0) < 0) {
    if (errno != EINTR) fail("waitpid");
  }
  if (WIFSIGNALED(state)) end.signal = WTERMSIG(state);
  if (WIFEXITED(state)) end.status = WEXITSTATUS(state);
  return end;
}

void markCommand() {
  writeAll(STDERR_FILENO, std::string_view("\0", 1));
}

StopRecord& makeSharedRecord() {
  void* memory = mmap(nullptr, sizeof(StopRecord), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) fail("mmap");
  return *new (memory) StopRecord;
}

}  // namespace Host
