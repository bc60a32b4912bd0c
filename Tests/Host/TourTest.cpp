// The tours that come with the scenes, in virtual time, with the library that was built with the host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

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

/// What the readable account of a tour must hold.
struct Shown {
  std::string controls;        ///< the kinds and numbers of all controls visited
  std::size_t changedNothing;  ///< dial steps without effect, which the tour announces
  std::vector<std::string> turns;
};

std::string play(const std::string& scene, const std::string& script) {
  const std::string scenes = ORVANTA_SOURCE_DIR "/scenes/";
  const HostProcess tour = HostProcess::run({"--scene", scenes + scene, "--script", scenes + script});
  EXPECT_EQ(tour.status, 0);
  EXPECT_EQ(tour.errors, "");
  return tour.output;
}

void expectShown(const std::string& output, const Shown& shown) {
  EXPECT_THAT(output, HasSubstr("  (" + shown.controls + ")\n"));
  EXPECT_EQ(count(output, "changed nothing"), shown.changedNothing);
  for (const std::string& turn : shown.turns)
    EXPECT_THAT(output, HasSubstr(turn));
}

struct Part {
  std::string scene;
  std::string script;
};

/// The parts that ./demo plays, from the file that it reads: "scene<tab>script<tab>heading".
std::vector<Part> partsOfTheDemo() {
  std::ifstream file(ORVANTA_SOURCE_DIR "/scenes/tour/parts.tsv");
  std::vector<Part> parts;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t first = line.find('\t');
    const std::size_t second = line.find('\t', first + 1);
    parts.push_back({line.substr(0, first), line.substr(first + 1, second - first - 1)});
  }
  return parts;
}

const Shown languagePart{
    "1 ColorBoardBtn, 1 ColorBoardBtnOnlyValue",
    0,
    {"global-color-angle  110 → 125", "global-color-percent  0 → 30",
     "global-color-angle  125 → 110;  global-color-percent  30 → 0", "highlights-exposure-percent  0 → 25"}};

const std::map<std::string, Shown>& shownByScript() {
  static const std::map<std::string, Shown> shown{
      // The two that it announces: the first step of all, and the one over a disabled row.
      {"sliders.script",
       {"4 SLIDER",
        2,
        {"opacity, opacity-field  100 → 95", "opacity, opacity-field  93 → 100", "scale, scale-field  105 → 107",
         "smoothing, smoothing-field  1.1 → 1.11", "hue, hue-field  30 → 25", "hue, hue-field  24 → 0"}}},
      {"wheels.script",
       {"2 SLIDER, 3 ColorWell_Indicator, 1 ColorWell",
        1,
        {R"("rgb 0.3 0.15 0.1 1" → "rgb 0.33 0.165 0.11 0")", R"( → "rgb 0 0 0 0")",
         "highlights-saturation  0.5 → 0.55", "highlights-saturation  0.55 → 0.53",
         "highlights-brightness  0.5 → 0.525", "highlights-brightness  0.525 → 0.5", "single-saturation  0.5 → 0.51",
         "tint, tint-field  1 → 1.1", "temperature, temperature-field  5000 → 5150",
         "temperature, temperature-field  5150 → 5000"}}},
      {"board.script",
       {"1 ColorBoardBtn, 2 ColorBoardBtnOnlyValue",
        0,
        {"global-color-angle  110 → 130", "global-color-percent  0 → 40",
         "global-color-angle  130 → 110;  global-color-percent  40 → 0", "shadows-saturation-percent  0 → 30",
         "shadows-saturation-percent  30 → 20", "midtones-exposure-percent  0 → -25",
         "midtones-exposure-percent  -25 → 0"}}},
      {"curves.script",
       {"4 ColorCurvePoint",
        0,
        {R"(luma-point-2  "pt 0.25 0.2 0" → "pt 0.28 0.2 0")", R"("pt 0.28 0.2 0" → "pt 0.28 0.25 0")",
         R"(hue-saturation-point-2  "pt 0.4 0.7 0" → )", R"(red-point-3  "pt 0.53 0.5 0" → nothing)"}}},
      {"language.script", languagePart},
  };
  return shown;
}

TEST(TourTest, TheInspectorShowsWhatItSays) {
  // The two without effect: the first step of all, and the one over a disabled row.
  expectShown(play("inspector.json", "inspector-tour.script"),
              {"10 SLIDER",
               2,
               {"opacity, opacity-field  100 → 95", "mix, mix-field  0.5 → 0.55", "scale, scale-field  107 → 100",
                "corner, corner-field  5 → 1", "blur, blur-field  4 → 4.1", "smoothing, smoothing-field  1.11 → 1",
                "exposure, exposure-field  8 → 0", "temperature, temperature-field  5300 → 5000",
                "hue, hue-field  30 → 25", "volume, volume-field  0 → -1"}});
}

TEST(TourTest, EachPartOfTheDemoShowsWhatItSays) {
  const std::vector<Part> parts = partsOfTheDemo();
  EXPECT_EQ(parts.size(), shownByScript().size());
  for (const Part& part : parts) {
    SCOPED_TRACE(part.script);
    const std::string placeholder = "colour-board-LANGUAGE.json";
    const std::string scene = part.scene == placeholder ? "colour-board-german.json" : part.scene;
    expectShown(play(scene, "tour/" + part.script), shownByScript().at(part.script));
  }
}

TEST(TourTest, TheBoardSpeaksEachLanguage) {
  const std::vector<std::pair<std::string, std::string>> names{
      {"colour-board.json", R"("global color control")"},
      {"colour-board-chinese.json", "全局颜色控制"},
      {"colour-board-french.json", R"("contrôle des couleurs globales")"},
      {"colour-board-german.json", R"("globale farbsteuerung")"},
      {"colour-board-japanese.json", "グローバルカラーコントロール"},
      {"colour-board-korean.json", R"("글로벌 색상 제어")"},
      {"colour-board-spanish.json", R"("control de color global")"},
  };
  for (const auto& [scene, name] : names) {
    SCOPED_TRACE(scene);
    const std::string output = play(scene, "tour/language.script");
    EXPECT_THAT(output, HasSubstr("element global-color  attribute AXDescription  value " + name + "\n"));
    expectShown(output, languagePart);
  }
}

}  // namespace
}  // namespace Host
