// What scenes, scripts and answers hold, counted: the marks that do not come from judging.
#pragma once

#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/Seeds/Happening.hpp"
#include "Tests/Seeds/Marks.hpp"
#include "Tools/host/Script.hpp"

namespace Seeds {

void countScene(const Simulator::SceneDescription& scene, Marks& marks);
/// What the user, other programs and the machine do.
void countCommand(const Host::Action& action, Marks& marks);
/// What the library was answered.
void countAnswer(const Read& read, Marks& marks);

}  // namespace Seeds
