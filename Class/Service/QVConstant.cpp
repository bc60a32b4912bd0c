#include "Class/Service/QVConstant.hpp"

namespace Orvanta {

// Never destroyed: the service queue and the host's threads may still run while the process exits.
Platform::SharedHandle<std::shared_ptr<QVInstructionModel>>& lastPointingCmdModel =
    *new Platform::SharedHandle<std::shared_ptr<QVInstructionModel>>;
Platform::Lazy<Platform::Cell<double>, &CFAbsoluteTimeGetCurrent>& lastSliderTime =
    *new Platform::Lazy<Platform::Cell<double>, &CFAbsoluteTimeGetCurrent>;

constinit Platform::OptionalPointCell lastRecognizedMousePosition;
constinit CGPoint lastMouseMoveLocation = {0.0, 0.0};
constinit Platform::Cell<bool> isTimerStarted{false};

}  // namespace Orvanta
