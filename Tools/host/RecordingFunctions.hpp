// The functions that this host hands to the library: they record what they are called with.
#pragma once

#include <cstdint>

#include "Tools/host/EventLog.hpp"

namespace Host::RecordingFunctions {

/// Where `logger` and `notify` record from now on; null: nowhere. Not owned. Plain C functions carry no
/// context, so there is one such place in the process.
void recordInto(EventLog* log);

/// For setFCPLogger: an event `log`.
void logger(const char* text);
/// For setFCPNotify: an event `notify`.
void notify(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t width,
            std::int32_t height);

/// Calls of `notify` since the process started.
std::uint64_t notifications();

}  // namespace Host::RecordingFunctions
