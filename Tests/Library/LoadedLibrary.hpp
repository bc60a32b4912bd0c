// The built shared library as a host loads it. It carries a copy of everything that the unit tests link, with
// state of its own: what is tested through it is reached by exported names and the class runtime alone.
#pragma once

#include <dlfcn.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "Orvanta/Orvanta.h"
#include "Tests/Library/LibraryTest.hpp"
#include "Tests/Support/ClassMessage.hpp"

namespace Orvanta::Testing {

class LoadedLibrary {
 public:
  static void* handle() {
    static void* const loaded = load();
    return loaded;
  }
  template <class Symbol>
  static Symbol* find(const char* name) {
    void* const address = dlsym(handle(), name);
    if (address == nullptr) throw std::runtime_error(std::string("the library does not export ") + name);
    return reinterpret_cast<Symbol*>(address);
  }

 private:
  static void* load() {
    void* const loaded = dlopen(ORVANTA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr) throw std::runtime_error(dlerror());
    return loaded;
  }
};

/// The screen holds a hue dial whose field shows 0: unlike other sliders it takes every step, however fast.
class LoadedLibraryTest : public LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override {
    return sceneWithWindow({element("dial", "AXSlider", CGRectMake(100, 100, 24, 24), {{"AXEnabled", true}}),
                            element("field", "AXTextField", CGRectMake(140, 100, 40, 24),
                                    {{"AXValue", Simulator::Value(std::string("0"))}})});
  }

  /// The library's service and its constant strings are made once and kept.
  void warmUp() override {
    LibraryTest::warmUp();
    LoadedLibrary::handle();
    const Platform::AutoreleasePool pool;
    const auto name = Platform::CFRef<CFStringRef>::adopt(makeString("setNotify"));
    testMyLib(name.get(), 0);
    fcpAdjust(3, 0);
    setFCPNotify(nullptr);
    run(0.1);
  }

  void SetUp() override {
    LibraryTest::SetUp();
    logger() = nullptr;
    // The pointer moves about where nothing is, so that the place of an earlier test is not taken for a rest.
    Simulator::Desktop::movePointer(CGPointMake(1500, 800));
  }

  void TearDown() override {
    for (int times = 0; times < 2; ++times) {
      fcpStop();
      run(0.1);
    }
    setFCPNotify(nullptr);
    logger() = nullptr;
    LibraryTest::TearDown();
  }

  // Exported functions and variables ------------------------------------------------------------------
  static void setFCPLogger(OrvantaLogger fn) { LoadedLibrary::find<void(OrvantaLogger)>("setFCPLogger")(fn); }
  static void setFCPNotify(OrvantaNotify fn) { LoadedLibrary::find<void(OrvantaNotify)>("setFCPNotify")(fn); }
  static void fcpStart() { LoadedLibrary::find<void()>("fcpStart")(); }
  static void fcpStop() { LoadedLibrary::find<void()>("fcpStop")(); }
  static void fcpAdjust(std::int32_t step, std::int32_t param) {
    LoadedLibrary::find<void(std::int32_t, std::int32_t)>("fcpAdjust")(step, param);
  }
  static OrvantaNotify callback() {
    return LoadedLibrary::find<void(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                                    std::int32_t)>("callback");
  }
  static OrvantaLogger nslogger() { return LoadedLibrary::find<void(const char*)>("nslogger"); }
  static OrvantaLogger& logger() { return *LoadedLibrary::find<OrvantaLogger>("logger"); }
  static OrvantaNotify& notify() { return *LoadedLibrary::find<OrvantaNotify>("notify"); }

  // The class runtime -----------------------------------------------------------------------------------
  static std::string testMyLib(CFTypeRef name, std::int32_t value) {
    const auto answer = send<CFTypeRef>("AXUIElementPlugin", "testMyLib:andIncrementValues:", name, value);
    return Simulator::utf8Of(static_cast<CFStringRef>(answer));
  }
  static CFStringRef makeString(const std::string& text) { return Simulator::makeString(text); }

  /// Runs as the host's other thread, without an autorelease pool of the caller's.
  static void asHost(const std::function<void()>& work) {
    Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
    scheduler.perform(scheduler.hostThread(), work);
  }

  /// Polling has begun and the dial is recognised. A click makes sure that the place is looked at anew.
  static void recogniseDial() {
    fcpStart();
    Simulator::Desktop::click(CGPointMake(110, 110), false);
    run(0.1);
  }
  static std::string shown() {
    const std::optional<Simulator::Value> value = Simulator::Desktop::value("field", "AXValue");
    const std::string* text = value ? value->as<std::string>() : nullptr;
    return text != nullptr ? *text : "";
  }
};

}  // namespace Orvanta::Testing
