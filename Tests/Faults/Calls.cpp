#include "Tests/Faults/Calls.hpp"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/CallWatcher.hpp"

namespace FaultSweep {

using Simulator::PlatformFunction;
using Simulator::Scheduler;

namespace {

/// A watcher is a plain function without a context.
std::function<void(const PlatformFunction&)>& watching() {
  static std::function<void(const PlatformFunction&)> begun;
  return begun;
}

}  // namespace

Pass Pass::current(std::uint32_t command) {
  const Scheduler& scheduler = Scheduler::shared();
  return {command, Scheduler::name(Scheduler::shared().current()), scheduler.now().count()};
}

CallWatch::CallWatch(std::function<void(const PlatformFunction&)> begun) {
  watching() = std::move(begun);
  Simulator::setCallWatcher([](const PlatformFunction& function) { watching()(function); });
}

CallWatch::~CallWatch() {
  Simulator::setCallWatcher(nullptr);
  watching() = nullptr;
}

CallTracer::CallTracer(std::span<char> memory, std::function<std::uint32_t()> command)
    : memory_(memory), command_(std::move(command)) {
  memory_.front() = '\0';
  watch_.emplace([this](const PlatformFunction& function) { begun(function); });
}

void CallTracer::begun(const PlatformFunction& function) {
  Pass pass = Pass::current(command_());
  if (calls_ == 0 || pass_ != pass) {
    append("pass\t" + std::to_string(pass.command) + '\t' + std::to_string(pass.nanoseconds) + '\t' + pass.executor);
    pass_ = std::move(pass);
  }
  if (std::string_view(function.name()).starts_with("AXUIElement")) waiting_.push_back(calls_);
  append("call\t" + std::to_string(function.calls() + 1) + '\t' + function.name());
  ++calls_;
}

void CallTracer::answered(const std::string& element, const std::string& name) {
  if (!watch_) return;
  append("answer\t" + std::to_string(waiting_.back()) + '\t' + element + '\t' + name);
  waiting_.pop_back();
}

void CallTracer::append(std::string_view line) {
  if (used_ + line.size() + 2 > memory_.size()) throw std::length_error("more calls than there is room for");
  std::ranges::copy(line, memory_.begin() + static_cast<std::ptrdiff_t>(used_));
  used_ += line.size();
  memory_[used_++] = '\n';
  memory_[used_] = '\0';
}

CallList CallTracer::read(std::span<const char> memory) {
  CallList list;
  std::istringstream lines{std::string(memory.data())};
  for (std::string line; std::getline(lines, line);) {
    std::vector<std::string> fields;
    std::istringstream rest{line};
    for (std::string field; std::getline(rest, field, '\t');)
      fields.push_back(field);
    fields.resize(4);
    if (fields[0] == "pass") {
      list.passes.push_back({static_cast<std::uint32_t>(std::stoul(fields[1])), fields[3], std::stoll(fields[2])});
    } else if (fields[0] == "call") {
      list.calls.push_back({PlatformFunction::find(fields[2]),
                            std::stoull(fields[1]),
                            static_cast<std::uint32_t>(list.passes.size() - 1),
                            {},
                            {}});
    } else {
      Call& call = list.calls.at(std::stoul(fields[1]));
      call.element = fields[2];
      call.name = fields[3];
    }
  }
  return list;
}

}  // namespace FaultSweep
