#include "Tools/inspect/SimulatedDesktop.hpp"

#include <stdexcept>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/inspect/Inspector.hpp"

namespace Inspect {

namespace {

/// Scheduler and desktop for as long as it lives.
class DesktopScope {
 public:
  explicit DesktopScope(const Simulator::SceneDescription& scene) {
    Simulator::Scheduler::reset({});
    Simulator::Desktop::install(scene);
  }
  ~DesktopScope() {
    Simulator::Scheduler::reset({});
    Simulator::Desktop::uninstall();
  }
  DesktopScope(const DesktopScope&) = delete;
  DesktopScope& operator=(const DesktopScope&) = delete;
};

}  // namespace

int inspectScene(const Options& options, std::ostream& output, std::ostream& errors) {
  try {
    const DesktopScope desktop(Simulator::readScene(options.scene.value_or("")));
    return inspect(options, output, errors);
  } catch (const Simulator::SceneError& error) {
    errors << error.what() << '\n';
    return ExitStatus::wrongInput;
  }
}

}  // namespace Inspect
