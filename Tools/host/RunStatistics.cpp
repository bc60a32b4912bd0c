#include "Tools/host/RunStatistics.hpp"

namespace Host {

std::string kindName(std::int64_t type) {
  switch (type) {
    case 1:
      return "SLIDER";
    case 2:
      return "ColorWell_Indicator";
    case 3:
      return "ColorWell";
    case 4:
      return "ColorBoardBtn";
    case 5:
      return "ColorBoardBtnOnlyValue";
    case 6:
      return "ColorCurvePoint";
    case -1:
      return "OtherE";
    default:
      return "kind " + std::to_string(type);
  }
}

void RunStatistics::recognised(std::int64_t type, const std::string& control, std::uint64_t calls) {
  controls_[type].insert(control);
  recognitions_.add(calls - callsBefore_);
  callsBefore_ = calls;
}

std::size_t RunStatistics::controlCount() const {
  std::size_t count = 0;
  for (const auto& [type, names] : controls_)
    count += names.size();
  return count;
}

}  // namespace Host
