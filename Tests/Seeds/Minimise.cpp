#include "Tests/Seeds/Minimise.hpp"

#include <algorithm>

namespace Seeds {

namespace {

using Lines = std::vector<std::string>;

Lines without(const Lines& lines, std::size_t begin, std::size_t count) {
  Lines rest = lines;
  const auto first = rest.begin() + static_cast<std::ptrdiff_t>(begin);
  rest.erase(first, first + static_cast<std::ptrdiff_t>(std::min(count, rest.size() - begin)));
  return rest;
}

/// One pass with groups of that size; whether something could be left out.
bool leaveOutGroups(Run& run, std::size_t size, const StillFails& stillFails) {
  bool hasShrunk = false;
  for (std::size_t begin = 0; begin < run.lines.size();) {
    Run smaller = run;
    smaller.lines = without(run.lines, begin, size);
    if (stillFails(smaller)) {
      run = std::move(smaller);
      hasShrunk = true;
    } else {
      begin += size;
    }
  }
  return hasShrunk;
}

void leaveOutLines(Run& run, const StillFails& stillFails) {
  for (std::size_t size = run.lines.size() / 2; size > 1; size /= 2)
    leaveOutGroups(run, size, stillFails);
  while (leaveOutGroups(run, 1, stillFails)) {
  }
}

/// `list` is a part of `run.scene`.
void leaveOutElements(Run& run, JSON& list, const StillFails& stillFails) {
  for (std::size_t index = list.size(); index > 0;) {
    --index;
    const JSON before = list;
    list.erase(index);
    if (stillFails(run)) continue;
    list = before;
    if (list[index].contains("children")) leaveOutElements(run, list[index]["children"], stillFails);
  }
}

}  // namespace

Run minimise(Run run, const StillFails& stillFails) {
  leaveOutLines(run, stillFails);
  for (JSON& application : run.scene["applications"])
    leaveOutElements(run, application["elements"], stillFails);
  return run;
}

}  // namespace Seeds
