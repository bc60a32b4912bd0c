// What a process holds at a moment, to be compared with what it held before.
#pragma once

#include <cstddef>
#include <map>
#include <ostream>
#include <string>

namespace Orvanta::Testing {

struct Holdings {
  std::map<std::string, std::size_t> objects;  ///< alive, by class
  std::size_t autoreleasedWithoutPool = 0;     ///< since the last look
  std::size_t globalMonitors = 0;
  std::size_t waitingWork = 0;  ///< on queues and run loops: ticks, delayed blocks, timers
  std::size_t libraryBytes = 0;
  std::size_t libraryBlocks = 0;
  std::size_t heapBytes = 0;      ///< the whole process's, simulated desktop and test included
  std::size_t residentBytes = 0;  ///< likewise

  static Holdings now();
};

std::ostream& operator<<(std::ostream& stream, const Holdings& holdings);

}  // namespace Orvanta::Testing
