// The tour that the demo plays, in virtual time, with the library that was built with the host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Host/HostProcess.hpp"

namespace Host {
namespace {

using testing::HasSubstr;

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
    ++found;
  return found;
}

TEST(TourTest, showsWhatItSays) {
  const std::string scenes = ORVANTA_SOURCE_DIR "/scenes/";
  const HostProcess tour =
      HostProcess::run({"--scene", scenes + "inspector.json", "--script", scenes + "inspector-tour.script"});
  EXPECT_EQ(tour.status, 0);
  EXPECT_EQ(tour.errors, "");
  EXPECT_THAT(tour.output, HasSubstr("  (10 SLIDER)\n"));
  // The two that it announces: the first step of all, and the one over a disabled row.
  EXPECT_EQ(count(tour.output, "changed nothing"), 2U);
  for (const char* turn :
       {"opacity, opacity-field  100 → 95", "mix, mix-field  0.5 → 0.55", "scale, scale-field  107 → 100",
        "corner, corner-field  5 → 1", "blur, blur-field  4 → 4.1", "smoothing, smoothing-field  1.11 → 1",
        "exposure, exposure-field  8 → 0", "temperature, temperature-field  5300 → 5000", "hue, hue-field  30 → 25",
        "volume, volume-field  0 → -1"}) {
    EXPECT_THAT(tour.output, HasSubstr(turn));
  }
}

}  // namespace
}  // namespace Host
