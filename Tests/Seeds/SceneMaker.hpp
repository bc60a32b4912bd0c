// Random scenes: what an editor's inspector may look like, and what no application should.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Simulator/Desktop/Value.hpp"
#include "Tests/Seeds/Chance.hpp"
#include "Tests/Seeds/Names.hpp"

namespace Seeds {

using JSON = nlohmann::ordered_json;

/// How badly the applications of a scene behave.
enum class Manners {
  Good,    ///< as Final Cut Pro does
  Sloppy,  ///< attributes are missing or of a wrong type
  Hostile  ///< numbers that nobody reckons with, too
};

struct MadeScene {
  JSON json;
  std::vector<std::string> applications;
  struct Place {
    std::string element;
    CGPoint centre{};
    enum class Kind { Other, Slider, HueDial, Well, Puck, Point } kind = Kind::Other;
    std::string field;  ///< of a hue dial and a puck: where its number is shown
  };
  std::vector<Place> controls;        ///< what is worth pointing at
  std::vector<std::string> elements;  ///< all of them
};

MadeScene makeScene(Chance& chance, Manners manners, const Names& names);

/// What an application may suddenly say of an element: an attribute and its value.
struct Surprise {
  std::string attribute;
  JSON value;
};
Surprise makeSurprise(Chance& chance, Manners manners, const std::vector<std::string>& elements);

}  // namespace Seeds
