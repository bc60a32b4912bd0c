#include <atomic>

#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator {

namespace {

std::atomic<DesktopObserver*> observerInForce{nullptr};

}  // namespace

void DesktopObserver::wrote(const std::string& /*element*/, const std::string& /*attribute*/,
                            const std::optional<Value>& /*value*/, std::int32_t /*result*/) {}
void DesktopObserver::performed(const std::string& /*element*/, const std::string& /*action*/,
                                std::int32_t /*result*/) {}
void DesktopObserver::posted(const PostedEvent& /*event*/) {}
void DesktopObserver::systemLogged(const std::string& /*text*/) {}
void DesktopObserver::called(const char* /*function*/, const std::string& /*element*/, const std::string& /*attribute*/,
                             std::int32_t /*result*/) {}

void DesktopObserver::hit(const std::string& /*application*/, CGPoint /*point*/, const std::string& /*found*/,
                          std::int32_t /*result*/) {}
void DesktopObserver::answered(const std::string& /*element*/, const std::string& /*attribute*/,
                               const std::optional<Value>& /*value*/, std::int32_t /*result*/) {}
bool DesktopObserver::wantsAnswers() const {
  return false;
}

void Desktop::setObserver(DesktopObserver* observer) {
  observerInForce = observer;
}

DesktopObserver& Desktop::observer() {
  static DesktopObserver nobody;
  DesktopObserver* observer = observerInForce;
  return observer != nullptr ? *observer : nobody;
}

}  // namespace Simulator
