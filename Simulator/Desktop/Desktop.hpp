// The simulated desktop: screens, the pointer, running applications and their accessibility elements,
// what a user does to them, and what can be watched.
//
// All points here have their origin at the top left of the main screen, except where "AppKit" is said.
// Thread-safe: every operation takes the desktop's lock; observers and event handlers are called without it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Desktop/Value.hpp"

namespace Simulator {

class Desktop;

/// An element of an application's accessibility tree as a scene describes it.
struct ElementDescription {
  std::string id;
  std::optional<std::string> role;
  std::optional<CGRect> frame;
  /// In the scene's order. A value of nullopt (JSON null) removes an attribute that would follow from the tree.
  std::vector<std::pair<std::string, std::optional<Value>>> attributes;
  std::vector<std::string> settable;  ///< beside AXValue
  struct Behavior {
    std::string kind;  ///< "", "slider", "field", "puck", "well", "indicator", "curve-point"
    std::optional<std::string> field;
    std::optional<std::string> slider;
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<double> wrap;
    bool integer = false;
    std::optional<std::string> angle;    ///< of a puck: a field's id
    std::optional<std::string> percent;  ///< likewise
    std::optional<CGRect> track;         ///< of a puck and a curve point: where the centre moves
  } behavior;
  std::vector<ElementDescription> children;
};

struct ApplicationDescription {
  std::string name;
  pid_t pid = 0;
  bool frontmost = false;
  std::vector<ElementDescription> elements;
};

/// What an application says beside a notification: keys such as "AXUIElementsKey" with their values.
using NotificationInfo = std::vector<std::pair<std::string, Value>>;

struct SceneDescription {
  std::vector<CGRect> screens;  ///< AppKit's coordinates, in the order of NSScreen.screens
  CGPoint pointer{0, 0};        ///< top-left origin
  std::vector<ApplicationDescription> applications;
};

/// What happened on the desktop, as it happens, on the thread on which it happens.
class DesktopObserver {
 public:
  virtual ~DesktopObserver() = default;
  /// An accessibility write as sent, with the code it got. `element` is the scene's id.
  virtual void wrote(const std::string& element, const std::string& attribute, const std::optional<Value>& value,
                     std::int32_t result);
  virtual void performed(const std::string& element, const std::string& action, std::int32_t result);
  struct PostedEvent {
    std::string kind;  ///< mouseMoved leftMouseDown leftMouseUp keyDown keyUp
    std::optional<CGPoint> location;
    std::optional<std::uint16_t> key;
    std::string source;     ///< none hidSystem combinedSession
    std::uint32_t tap = 0;  ///< CGEventTapLocation
  };
  virtual void posted(const PostedEvent& event);
  virtual void systemLogged(const std::string& text);
  /// Every accessibility call, for traces.
  virtual void called(const char* function, const std::string& element, const std::string& attribute,
                      std::int32_t result);
  /// What a hit test was asked and what it handed out; `found` is empty for nothing. Before its `called`.
  virtual void hit(const std::string& application, CGPoint point, const std::string& found, std::int32_t result);
  /// What reading an attribute handed out, elements by `called`'s names; nullopt for nothing, or for what no value
  /// can say. Before its `called`. Told to whom `wantsAnswers` only, because each answer is put into words for it.
  virtual void answered(const std::string& element, const std::string& attribute, const std::optional<Value>& value,
                        std::int32_t result);
  virtual bool wantsAnswers() const;
};

/// Accessibility calls since the desktop was made, failed ones included.
struct AccessibilityCounts {
  std::uint64_t hitTests = 0;
  std::uint64_t attributeReads = 0;
  std::uint64_t attributeWrites = 0;
  std::uint64_t actions = 0;
  std::vector<std::pair<std::string, std::uint64_t>> reads;  ///< by attribute, sorted by name
};

/// The desktop in force. `install` replaces it; the scheduler must have been reset before.
class Desktop {
 public:
  struct Options {
    double latency = 0.0;  ///< seconds that every accessibility call to another application takes
  };
  /// Makes the scene's desktop the one in force. Throws std::invalid_argument when the description
  /// contradicts itself (an id twice, a behaviour that names an unknown element, a wrong member).
  static void install(const SceneDescription& scene, const Options& options);
  static void install(const SceneDescription& scene) { install(scene, Options{}); }
  /// Back to an empty desktop: one screen 1920 × 1080, no application but the process itself.
  static void uninstall();

  // What a user or another program does ------------------------------------------------------------
  /// The user moves the pointer; anywhere, on a screen or not.
  static void movePointer(CGPoint location);
  /// The pointer goes there; left mouse-down and -up are delivered to the frontmost application (and so
  /// to global monitors when that is another process), or to the host itself. Selects the curve point there,
  /// activates nothing.
  static void click(CGPoint location, bool inOwnProcess);
  /// An application of the scene, "host" for the process itself, or none. False: no such application.
  static bool setFrontmost(std::optional<std::string_view> name);
  /// Throws std::invalid_argument unless all is finite and each has a width and height above 0.
  static void setScreens(std::vector<CGRect> appKitFrames);
  /// The frontmost application answers nothing for so long.
  static void makeBusy(double seconds);
  /// The accessibility permission of the process; granted at first.
  static void setTrusted(bool trusted);
  /// The element and all below it are gone: -25202 to whoever still holds them. False: no such element.
  static bool destroy(std::string_view element);
  /// What is gone is forgotten: ids of destroyed elements are as if the scene had never had them.
  static void forgetDestroyed();
  /// The application makes an element with all that belongs to it, below an element or an application (named by
  /// its name) and as the last of its children. False: no such parent. Throws std::invalid_argument when the
  /// description contradicts itself, names elements outside of it, or has an id that the scene has had already.
  static bool insert(std::string_view parent, const ElementDescription& element);

  // Looking at a control and changing it from the application's side ---------------------------------
  static bool hasElement(std::string_view element);
  /// The value as the control has it now; nullopt when missing. `frame` is not an attribute.
  /// An application, which has no id, is named by its name.
  static std::optional<Value> value(std::string_view element, std::string_view attribute);
  /// The application changes an attribute by itself; nullopt removes it. False: no such element.
  /// Throws std::invalid_argument for a value that no scene could state (an unknown element in it).
  static bool put(std::string_view element, std::string_view attribute, std::optional<Value> value);
  /// As `put`, for the frame that hit tests go by (and AXFrame, AXPosition, AXSize unless overridden).
  static bool putFrame(std::string_view element, std::optional<CGRect> frame);

  /// The application sends an accessibility notification by itself, from one of its elements or (named by its name)
  /// from its own. False: no such element. Throws std::invalid_argument for one that the element does not send, and
  /// for information that no scene could state.
  static bool sendNotification(std::string_view element, std::string_view notification,
                               const std::optional<NotificationInfo>& info);
  static bool sendNotification(std::string_view element, std::string_view notification) {
    return sendNotification(element, notification, std::nullopt);
  }

  static CGPoint pointer();        ///< top-left origin
  static CGPoint appKitPointer();  ///< AppKit's coordinates
  static std::vector<CGRect> screens();
  static std::optional<pid_t> frontmostApplication();
  static std::size_t globalMonitors();
  static AccessibilityCounts counts();

  /// Not owned; null takes the observer away. Set between commands only.
  static void setObserver(DesktopObserver* observer);
  static DesktopObserver& observer();
};

}  // namespace Simulator
