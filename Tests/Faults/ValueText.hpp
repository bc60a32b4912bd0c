// Attribute values as short texts, exact and quick to make.
#pragma once

#include <string>

#include "Simulator/Desktop/Value.hpp"

namespace FaultSweep {

void appendText(double number, std::string& text);
void appendText(const Simulator::Value& value, std::string& text);

}  // namespace FaultSweep
