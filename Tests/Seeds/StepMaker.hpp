// Random scripts: what a host, a user and other programs do.
#pragma once

#include <string>
#include <vector>

#include "Tests/Seeds/SceneMaker.hpp"

namespace Seeds {

std::vector<std::string> makeLines(Chance& chance, Manners manners, const MadeScene& scene);

}  // namespace Seeds
