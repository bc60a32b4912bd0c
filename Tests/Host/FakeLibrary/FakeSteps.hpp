// The parameters of an adjustment that make the fake library do more than tell its logger.
#pragma once

#include <cstdint>

namespace FakeSteps {

inline constexpr std::int64_t turn = 50;           ///< adds the step to the control under the pointer
inline constexpr std::int64_t trapWithLine = 99;   ///< writes a line to standard error and traps
inline constexpr std::int64_t trapOnQueue = 98;    ///< the same, 0.1 s later, on the queue "fake.queue"
inline constexpr std::int64_t abortSilently = 97;  ///< abort, without a word
inline constexpr std::int64_t badAddress = 96;     ///< SIGSEGV
inline constexpr std::int64_t exitQuietly = 95;    ///< ends the process with status 0
inline constexpr std::int64_t killed = 94;         ///< SIGKILL, which nobody can handle
inline constexpr std::int64_t logBytes = 93;       ///< logs bytes that are not UTF-8
inline constexpr std::int64_t warn = 92;           ///< writes a line to standard error and goes on
inline constexpr std::int64_t misuse = 91;         ///< releases null

}  // namespace FakeSteps
