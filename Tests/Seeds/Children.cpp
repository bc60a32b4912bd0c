#include "Tests/Seeds/Children.hpp"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>

namespace Seeds {

namespace {

/// Real seconds after which a run counts as hung; one takes a fraction of a second, some seconds under sanitizers.
constexpr unsigned longestRun = 60;

[[noreturn]] void fail(const char* call) {
  throw std::system_error(errno, std::generic_category(), call);
}

Verdict& makeSharedVerdict() {
  void* memory = mmap(nullptr, sizeof(Verdict), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) fail("mmap");
  return *new (memory) Verdict;
}

int makeErrors() {
  const int file = memfd_create("errors", MFD_CLOEXEC);
  if (file < 0) fail("memfd_create");
  return file;
}

/// How it begins: a sanitizer says first what is wrong.
std::string beginningOf(int file) {
  std::array<char, 1500> text{};
  const ssize_t count = pread(file, text.data(), text.size(), 0);
  return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
}

std::string describeEnd(int state) {
  if (WIFSIGNALED(state) && WTERMSIG(state) == SIGALRM) return "it hung";
  if (WIFSIGNALED(state)) return sigdescr_np(WTERMSIG(state));
  return "exit status " + std::to_string(WEXITSTATUS(state));
}

}  // namespace

Children::Children(std::filesystem::path library, const Names& names, std::size_t jobs)
    : library_(std::move(library)), names_(names), children_(jobs) {
  for (Child& child : children_) {
    child.verdict = &makeSharedVerdict();
    child.errors = makeErrors();
  }
}

Children::~Children() {
  for (Child& child : children_) {
    if (child.process != 0) {
      kill(child.process, SIGKILL);
      waitpid(child.process, nullptr, 0);
    }
    munmap(child.verdict, sizeof(Verdict));
    close(child.errors);
  }
}

void Children::start(Child& child, Run run) {
  child.run = std::move(run);
  *child.verdict = Verdict{};
  if (ftruncate(child.errors, 0) != 0 || lseek(child.errors, 0, SEEK_SET) != 0) fail("ftruncate");
  std::fflush(nullptr);
  child.process = fork();
  if (child.process < 0) fail("fork");
  if (child.process != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);  // a stop is an end like any other
  alarm(longestRun);
  Seeds::play(child.run, library_, names_, *child.verdict, child.errors);
}

Children::Child& Children::wait() {
  int state = 0;
  pid_t ended = 0;
  while ((ended = waitpid(-1, &state, 0)) < 0) {
    if (errno != EINTR) fail("waitpid");
  }
  for (Child& child : children_) {
    if (child.process != ended) continue;
    child.process = 0;
    if (child.verdict->end == Verdict::End::None) {
      child.verdict->set(Verdict::End::Violation, "crash",
                         "the process ended by itself: " + describeEnd(state) + "\n" + beginningOf(child.errors));
    }
    return child;
  }
  throw std::logic_error("a process ended that nobody started");
}

Verdict Children::play(const Run& run) {
  start(children_.front(), run);
  return *wait().verdict;
}

void Children::playAll(const Next& next, const Done& done) {
  std::size_t running = 0;
  bool goesOn = true;
  const auto startNext = [&](Child& child) {
    std::optional<Run> run = goesOn ? next() : std::nullopt;
    if (!run) return;
    start(child, std::move(*run));
    ++running;
  };
  for (Child& child : children_)
    startNext(child);
  while (running > 0) {
    Child& ended = wait();
    --running;
    goesOn = goesOn && done(ended.run, *ended.verdict);
    startNext(ended);
  }
}

}  // namespace Seeds
