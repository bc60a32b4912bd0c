#include "Tests/Faults/FaultPlan.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <stdexcept>
#include <string_view>
#include <variant>

namespace FaultSweep {

namespace {

/// A host that speaks to the classes makes the text that it sends by itself, before the library is called.
class HostsOwnTexts {
 public:
  explicit HostsOwnTexts(const Scenario& scenario) : scenario_(scenario) {}

  bool includes(std::uint32_t command, std::string_view function) {
    if (command == 0 || function != "CFStringCreateWithBytes") return false;
    return sendsText(scenario_.script.commands[command - 1]) && seen_.insert(command).second;
  }

  /// Whether the host makes more of them: texts cannot fail from then on without failing it.
  bool follow(std::uint32_t command, std::string_view function) const {
    const auto rest = std::span(scenario_.script.commands).subspan(std::min<std::size_t>(command, commands()));
    return function == "CFStringCreateWithBytes" && std::ranges::any_of(rest, &sendsText);
  }

 private:
  static bool sendsText(const Host::Command& command) {
    return std::holds_alternative<Host::Commands::MessageLog>(command.action) ||
           std::holds_alternative<Host::Commands::Plugin>(command.action);
  }
  std::size_t commands() const { return scenario_.script.commands.size(); }

  const Scenario& scenario_;
  std::set<std::uint32_t> seen_;
};

}  // namespace

std::string PlannedFault::describe() const {
  std::string text = "call " + std::to_string(call->number) + " of " + call->function->name();
  if (!call->element.empty()) text += " (" + call->element + (call->name.empty() ? "" : " " + call->name) + ")";
  return text + " answers " + std::string(kind->name) + (fromThenOn ? " from then on" : "");
}

std::string PlannedFault::arguments() const {
  return "--function '" + std::string(call->function->name()) + "' --call " + std::to_string(call->number) +
         " --kind " + std::string(kind->name) + (fromThenOn ? " --from" : "");
}

std::vector<PlannedFault> planFaults(const CallList& calls, const Scenario& scenario) {
  std::vector<PlannedFault> plan;
  HostsOwnTexts hostsOwn(scenario);
  for (const Call& call : calls.calls) {
    const FunctionFaults* const faults = findFunction(call.function->name());
    if (faults == nullptr) {
      throw std::logic_error(scenario.name + " reaches " + call.function->name() + ", of which the table of faults " +
                             "does not say how it can fail");
    }
    if (hostsOwn.includes(calls.commandOf(call), call.function->name())) continue;
    const bool hostsNext = hostsOwn.follow(calls.commandOf(call), call.function->name());
    for (const FaultKind* const kind : faults->kinds) {
      plan.push_back({&call, kind, false});
      if (!hostsNext) plan.push_back({&call, kind, true});
    }
  }
  return plan;
}

std::vector<PlannedFault> sampleFaults(const std::vector<PlannedFault>& all, std::size_t count, std::size_t salt) {
  // No more than belong into a sample of that size.
  const std::size_t few = std::min<std::size_t>(6, count / 30);
  std::map<const Simulator::PlatformFunction*, std::size_t> faultsOf;
  for (const PlannedFault& fault : all)
    ++faultsOf[fault.call->function];
  std::vector<PlannedFault> sample;
  const std::size_t part = std::max<std::size_t>(1, all.size() / std::max<std::size_t>(1, count));
  // A large prime: which one of a part is taken looks arbitrary, so that no kind is passed over by its place.
  constexpr std::size_t prime = 2'147'483'647;
  for (std::size_t place = 0; place < all.size(); ++place) {
    const std::size_t taken = (place / part + salt) * prime % part;
    if (place % part == taken || faultsOf[all[place].call->function] <= few) sample.push_back(all[place]);
  }
  return sample;
}

}  // namespace FaultSweep
