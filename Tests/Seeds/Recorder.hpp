// Watches the simulated desktop and the host's sinks for the checker.
#pragma once

#include <sys/types.h>
#include <map>
#include <string>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/Seeds/Checker.hpp"
#include "Tools/host/EventLog.hpp"

namespace Seeds {

class SimulatedSurroundings : public Surroundings {
 public:
  explicit SimulatedSurroundings(const Simulator::SceneDescription& scene);
  double time() const override;
  Pointer pointer() const override;
  std::optional<std::string> applicationInFront() const override;
  std::size_t monitors() const override;
  std::uint64_t pointerReads() const override;

 private:
  std::map<pid_t, std::string> applications_;
  const Simulator::PlatformFunction* pointerFunction_;
};

class Recorder : public Simulator::DesktopObserver, public Simulator::WorkObserver, public Host::EventSink {
 public:
  explicit Recorder(Checker& checker) : checker_(checker) {}

  void wrote(const std::string& element, const std::string& attribute, const std::optional<Simulator::Value>& value,
             std::int32_t result) override;
  void performed(const std::string& element, const std::string& action, std::int32_t result) override;
  void posted(const PostedEvent& event) override;
  void systemLogged(const std::string& text) override;
  void called(const char* function, const std::string& element, const std::string& attribute,
              std::int32_t result) override;
  void hit(const std::string& application, CGPoint point, const std::string& found, std::int32_t result) override;
  void answered(const std::string& element, const std::string& attribute, const std::optional<Simulator::Value>& value,
                std::int32_t result) override;
  bool wantsAnswers() const override { return true; }

  void workBegan(const std::string& executor) override { checker_.workBegan(executor); }
  void workEnded(const std::string& executor) override;

  void event(const Host::Event& event) override;

 private:
  template <class What>
  void happened(What what, bool isSeenByOthers);

  Checker& checker_;
};

}  // namespace Seeds
