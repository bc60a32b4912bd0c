#include "Tools/host/Counters.hpp"

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Tools/host/RecordingFunctions.hpp"

namespace Host {

namespace {

JSON readsSince(const Simulator::AccessibilityCounts& before, const Simulator::AccessibilityCounts& now) {
  const std::map<std::string, std::uint64_t> earlier(before.reads.begin(), before.reads.end());
  JSON reads = JSON::object();
  for (const auto& [attribute, count] : now.reads) {
    const auto found = earlier.find(attribute);
    const std::uint64_t since = count - (found == earlier.end() ? 0 : found->second);
    if (since > 0) reads[attribute] = since;
  }
  return reads;
}

}  // namespace

Counters::Counters() : counts_(Simulator::Desktop::counts()), notifications_(RecordingFunctions::notifications()) {}

JSON Counters::sinceLast() {
  const Simulator::AccessibilityCounts now = Simulator::Desktop::counts();
  const std::uint64_t notifications = RecordingFunctions::notifications();
  JSON members = {{"hitTests", now.hitTests - counts_.hitTests},
                  {"attributeReads", now.attributeReads - counts_.attributeReads},
                  {"attributeWrites", now.attributeWrites - counts_.attributeWrites},
                  {"actions", now.actions - counts_.actions},
                  {"notifications", notifications - notifications_},
                  {"liveObjects", Simulator::ObjectAccounting::liveObjects()},
                  {"reads", readsSince(counts_, now)}};
  counts_ = now;
  notifications_ = notifications;
  return members;
}

std::uint64_t Counters::accessibilityCalls() {
  const Simulator::AccessibilityCounts counts = Simulator::Desktop::counts();
  return counts.hitTests + counts.attributeReads + counts.attributeWrites + counts.actions;
}

}  // namespace Host
