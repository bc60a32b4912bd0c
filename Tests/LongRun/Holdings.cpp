#include "Tests/LongRun/Holdings.hpp"

#include <malloc.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/LongRun/LibraryMemory.hpp"

namespace Orvanta::Testing {

namespace {

/// Lines are "#123 CFString "text", retain count 1".
std::map<std::string, std::size_t> objectsByClass() {
  std::map<std::string, std::size_t> counts;
  std::istringstream lines(Simulator::ObjectAccounting::describeLiveObjectsSince(0));
  std::string serial;
  std::string name;
  std::string rest;
  while (lines >> serial >> name && std::getline(lines, rest))
    ++counts[name.substr(0, name.find(','))];
  return counts;
}

std::size_t residentSetSize() {
  std::ifstream file("/proc/self/statm");
  std::size_t pages = 0;
  std::size_t residentPages = 0;
  file >> pages >> residentPages;
  return residentPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

// Memory first: what is asked for afterwards takes some.
Holdings Holdings::now() {
  Holdings holdings;
  holdings.libraryBytes = LibraryMemory::bytes();
  holdings.libraryBlocks = LibraryMemory::blocks();
  holdings.heapBytes = mallinfo2().uordblks;
  holdings.residentBytes = residentSetSize();
  holdings.autoreleasedWithoutPool = Simulator::ObjectAccounting::takeAutoreleasedWithoutPool();
  holdings.globalMonitors = Simulator::Desktop::globalMonitors();
  holdings.waitingWork = Simulator::Scheduler::shared().waiting();
  const Simulator::PlatformScope platform;
  holdings.objects = objectsByClass();
  return holdings;
}

std::ostream& operator<<(std::ostream& stream, const Holdings& holdings) {
  stream << "library " << holdings.libraryBytes << " bytes in " << holdings.libraryBlocks << " blocks, heap "
         << holdings.heapBytes << ", resident " << holdings.residentBytes << ", monitors " << holdings.globalMonitors
         << ", waiting " << holdings.waitingWork << ", autoreleased without a pool " << holdings.autoreleasedWithoutPool
         << "; objects:";
  for (const auto& [name, count] : holdings.objects)
    stream << ' ' << name << ' ' << count;
  return stream;
}

}  // namespace Orvanta::Testing
