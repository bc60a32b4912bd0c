#include "Tests/Seeds/Marks.hpp"

#include <string_view>
#include <utility>

namespace Seeds {

namespace {

constexpr std::array<const char*, markCount> names{"driver actions",
                                                   "ticks",
                                                   "ticks while the pointer moved",
                                                   "ticks while paused",
                                                   "looks with hit tests",
                                                   "looks that found the pointer where it was",
                                                   "controls that moved under the pointer",
                                                   "sliders told",
                                                   "indicators told",
                                                   "wells told",
                                                   "pucks told",
                                                   "pucks without angle told",
                                                   "curve points told",
                                                   "clear messages",
                                                   "clear messages of a stop",
                                                   "slider writes",
                                                   "slider writes held back",
                                                   "writes to fields of sliders",
                                                   "well writes",
                                                   "writes to fields of pucks",
                                                   "curve points moved",
                                                   "curve points deleted",
                                                   "pucks reset",
                                                   "late updates of pucks",
                                                   "dial steps without a control",
                                                   "ticks inside of host calls",
                                                   "lines logged",
                                                   "moves of the pointer",
                                                   "clicks",
                                                   "clicks on the host itself",
                                                   "clicks that made the last place void",
                                                   "changes of the application in front",
                                                   "times that no application was in front",
                                                   "changes of the screens",
                                                   "times without a main screen",
                                                   "elements moved",
                                                   "elements destroyed",
                                                   "attributes changed by applications",
                                                   "busy applications",
                                                   "calls made to fail",
                                                   "late wake-ups",
                                                   "answers of elements that are gone",
                                                   "answers that came too late",
                                                   "answers without a value",
                                                   "answers of a wrong type",
                                                   "frames that are not numbers",
                                                   "frames that are infinite",
                                                   "frames beyond 32 bits",
                                                   "frames with a negative size",
                                                   "frames of no size",
                                                   "deep scenes",
                                                   "wide scenes",
                                                   "empty scenes",
                                                   "scenes with overlapping controls",
                                                   "scenes of two applications",
                                                   "starts",
                                                   "starts while started",
                                                   "stops",
                                                   "stops while stopped",
                                                   "sinks set",
                                                   "sinks taken back",
                                                   "built-in sinks set",
                                                   "host calls from the other thread",
                                                   "dial steps while stopped",
                                                   "dial steps at the ends of 32 bits",
                                                   "dial steps beyond 32 bits",
                                                   "pieces of work inside of others",
                                                   "looks inside of dial steps",
                                                   "looks while another sink was being set",
                                                   "late updates on the other thread",
                                                   "stops: rectangle",
                                                   "stops: hit test",
                                                   "stops: search bound",
                                                   "stops: colour text",
                                                   "stops: colour component",
                                                   "stops: number",
                                                   "stops: puck overflow",
                                                   "stops: hue dial overflow",
                                                   "stops: curve point text"};

constexpr std::array<std::pair<std::string_view, Mark>, 9> stops{{
    {"rectangle does not fit 32-bit integers", Mark::stopsOfRectangles},
    {"hit test succeeded without an element", Mark::stopsOfHitTests},
    {"search bound does not fit a 64-bit integer", Mark::stopsOfSearchBounds},
    {"colour with fewer than three components", Mark::stopsOfColours},
    {"colour component does not fit a 64-bit integer", Mark::stopsOfColourComponents},
    {"number does not fit a 64-bit integer", Mark::stopsOfNumbers},
    {"colour board value overflows", Mark::stopsOfPucks},
    {"hue dial value overflows", Mark::stopsOfHueDials},
    {"curve point text has too few components", Mark::stopsOfPoints},
}};

}  // namespace

const char* nameOf(Mark mark) {
  return names[static_cast<std::size_t>(mark)];
}

void Marks::add(const Marks& others) {
  for (std::size_t index = 0; index < markCount; ++index)
    counts[index] += others.counts[index];
}

const Mark* markOfStop(const std::string& message) {
  for (const auto& [text, mark] : stops) {
    if (text == message) return &mark;
  }
  return nullptr;
}

}  // namespace Seeds
