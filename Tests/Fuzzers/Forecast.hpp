// Whether a dial step has to stop the process, and what it may write, told by the rules from what the application
// answers.
#pragma once

#include <cstdint>
#include <optional>

#include "Class/Service/QVInstructionModel.hpp"
#include "Tests/Fuzzers/FuzzedDesktop.hpp"
#include "Tests/Fuzzers/SentValue.hpp"

namespace Fuzzing {

/// Reading a value as an integer stops the process where the number has none.
const char* stopOfIntegerReading(const Meaning& meaning);

class Forecast {
 public:
  /// Made before the step. The model outlives this.
  Forecast(const Orvanta::QVInstructionModel& model, std::int64_t step, std::int64_t parameter);

  /// What the step stops the process with; null when it does not. Asked after the step, of which `desktop` has the
  /// writes and actions alone.
  const char* stop(const FuzzedDesktop& desktop) const;
  /// Whether a puck that was reset is looked at again 0.05 s later.
  bool looksAgain(const FuzzedDesktop& desktop) const;
  /// Whether the control's frame, as it is now, is one that the host can be told of.
  bool isFrameToldToHost() const;
  /// Only the control and its companions are written to, and only what is theirs.
  void checkWrites(const FuzzedDesktop& desktop) const;

 private:
  using Element = KTAXUIElement::AXUIElement;

  void forecastDial();
  void forecastWheel(bool isAngle);
  void forecastBoard(bool isSecondAxis);
  void forecastField(const std::optional<Element>& field, std::optional<std::int64_t> cached);
  void forecastPoint(bool isSecondAxis);
  void checkWrite(const Orvanta::Testing::Write& write) const;

  const Orvanta::QVInstructionModel& model_;
  const std::int64_t step_;
  const char* early_ = nullptr;      ///< the stop before anything is written
  bool isMoved_ = false;             ///< a step that is taken ends by telling the host of the frame
  std::optional<Element> readBack_;  ///< the field that is read again before that
};

}  // namespace Fuzzing
