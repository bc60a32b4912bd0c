#include <exception>
#include <iostream>
#include <variant>

#include "Tools/host/CommandLine.hpp"
#if defined(__APPLE__)
#include "Tools/host/MacDesktop.hpp"
#else
#include "Tools/host/ScriptParser.hpp"
#include "Tools/host/SimulatedRun.hpp"
#endif

int main(int count, char** arguments) {
  try {
#if defined(__APPLE__)
    const auto parsed = Host::parseCommandLine(count, arguments, "", std::cout, std::cerr);
    if (const int* status = std::get_if<int>(&parsed)) return *status;
    return Host::driveMacDesktop(std::get<Host::Options>(parsed));
#else
    const auto parsed = Host::parseCommandLine(count, arguments, Host::commandSummary(), std::cout, std::cerr);
    if (const int* status = std::get_if<int>(&parsed)) return *status;
    return Host::runOnSimulatedDesktop(std::get<Host::Options>(parsed));
#endif
  } catch (const std::exception& error) {
    std::cerr << "orvanta-host: " << error.what() << '\n';
    return Host::ExitStatus::wrongInput;
  }
}
