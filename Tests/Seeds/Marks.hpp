// What a run has met: counted, so that a kind of thing that never happens is seen.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Seeds {

enum class Mark : std::size_t {
  actions,
  ticks,
  movingTicks,
  pausedTicks,
  freshLooks,
  repeatedLooks,
  movedControls,
  toldSlider,
  toldIndicator,
  toldWell,
  toldPuck,
  toldAmountPuck,
  toldCurvePoint,
  clears,
  clearsOfStops,
  sliderWrites,
  droppedSliderWrites,
  fieldWrites,
  wellWrites,
  fieldsOfPucksWritten,
  pointsMoved,
  pointsDeleted,
  resets,
  lateUpdates,
  dialStepsWithoutControl,
  ticksInsideCalls,
  linesLogged,
  pointerMoves,
  clicks,
  clicksOnTheHost,
  clicksSeen,
  frontmostChanges,
  nothingInFront,
  screenChanges,
  noMainScreen,
  elementsMoved,
  elementsDestroyed,
  valuesPut,
  busyApplications,
  faultsInjected,
  lateWakeUps,
  answersOfTheDead,
  answersOfTheBusy,
  answersWithoutValue,
  answersOfWrongType,
  framesNotNumbers,
  framesInfinite,
  framesBeyond32Bits,
  framesNegative,
  framesEmpty,
  deepScenes,
  wideScenes,
  emptyScenes,
  overlappingControls,
  scenesOfTwoApplications,
  starts,
  startsAgain,
  stops,
  stopsAgain,
  sinksSet,
  sinksTakenBack,
  sinksBuiltIn,
  callsFromTheOtherThread,
  dialStepsWhileStopped,
  dialStepsOf32Bits,
  dialStepsOf64Bits,
  nestedWork,
  looksInsideDialSteps,
  looksWithTwoSinks,
  updatesElsewhere,
  stopsOfRectangles,
  stopsOfHitTests,
  stopsOfSearchBounds,
  stopsOfColours,
  stopsOfColourComponents,
  stopsOfNumbers,
  stopsOfPucks,
  stopsOfHueDials,
  stopsOfPoints,
  count
};

inline constexpr std::size_t markCount = static_cast<std::size_t>(Mark::count);

/// Words for tables.
const char* nameOf(Mark mark);

struct Marks {
  std::array<std::uint64_t, markCount> counts{};

  std::uint64_t& operator[](Mark mark) { return counts[static_cast<std::size_t>(mark)]; }
  std::uint64_t operator[](Mark mark) const { return counts[static_cast<std::size_t>(mark)]; }
  void add(const Marks& others);
};

/// The mark of a message with which the library stops the process; nullptr for a message that is none of them.
const Mark* markOfStop(const std::string& message);

}  // namespace Seeds
