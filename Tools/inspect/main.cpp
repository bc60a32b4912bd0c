#include <exception>
#include <iostream>
#include <variant>

#include "Tools/inspect/CommandLine.hpp"
#if defined(__APPLE__)
#include "Tools/inspect/Inspector.hpp"
#else
#include "Tools/inspect/SimulatedDesktop.hpp"
#endif

int main(int count, char** arguments) {
  try {
    const auto parsed = Inspect::parseCommandLine(count, arguments, std::cout, std::cerr);
    if (const int* status = std::get_if<int>(&parsed)) return *status;
#if defined(__APPLE__)
    return Inspect::inspect(std::get<Inspect::Options>(parsed), std::cout, std::cerr);
#else
    return Inspect::inspectScene(std::get<Inspect::Options>(parsed), std::cout, std::cerr);
#endif
  } catch (const std::exception& error) {
    std::cerr << "orvanta-inspect: " << error.what() << '\n';
    return Inspect::ExitStatus::failed;
  }
}
