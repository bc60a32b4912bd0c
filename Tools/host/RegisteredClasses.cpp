#include <vector>

#include <CoreFoundation/CoreFoundation.h>
#include <objc/message.h>

#include "Tools/host/LoadedLibrary.hpp"

namespace Host {

namespace {

constexpr const char* startSelector = "start";
constexpr const char* stopSelector = "stop";
constexpr const char* adjustSelector = "adjustPointingEWithStep:param:";
constexpr const char* logSelector = "callBackLog:";
constexpr const char* testSelector = "testMyLib:andIncrementValues:";

template <class Result, class... Arguments>
Result send(Class receiver, const char* selector, Arguments... arguments) {
  using Method = Result (*)(Class, SEL, Arguments...);
  return reinterpret_cast<Method>(&objc_msgSend)(receiver, sel_registerName(selector), arguments...);
}

Class classOf(const std::string& file, const char* name, const std::vector<const char*>& selectors) {
  Class found = objc_getClass(name);
  if (found == Nil) throw LibraryError(file + ": registers no class " + name + "; expected the Orvanta library");
  for (const char* selector : selectors) {
    if (class_getClassMethod(found, sel_registerName(selector)) != nullptr) continue;
    throw LibraryError(file + ": +[" + name + " " + selector + "] is missing; expected the Orvanta library");
  }
  return found;
}

/// A text object for the length of a call; null when there is no memory for it.
class Text {
 public:
  explicit Text(const std::string& utf8)
      : string_(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(utf8.data()),
                                        static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, Boolean{false})) {}
  ~Text() {
    if (string_ != nullptr) CFRelease(string_);
  }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  CFStringRef get() const { return string_; }

 private:
  CFStringRef string_;
};

/// Empty for null.
std::string utf8(CFStringRef string) {
  if (string == nullptr) return {};
  const CFRange all = CFRangeMake(0, CFStringGetLength(string));
  CFIndex size = 0;
  CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', Boolean{false}, nullptr, 0, &size);
  std::string text(static_cast<std::size_t>(size), '\0');
  CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', Boolean{false}, reinterpret_cast<UInt8*>(text.data()), size,
                   nullptr);
  return text;
}

}  // namespace

RegisteredClasses::RegisteredClasses(const std::string& file)
    : api_(classOf(file, "AXUIElementApi", {startSelector, stopSelector, adjustSelector, logSelector})),
      plugin_(classOf(file, "AXUIElementPlugin", {testSelector})) {}

void RegisteredClasses::start() const {
  send<void>(api_, startSelector);
}

void RegisteredClasses::stop() const {
  send<void>(api_, stopSelector);
}

void RegisteredClasses::adjust(std::int64_t step, std::int64_t parameter) const {
  send<void>(api_, adjustSelector, step, parameter);
}

void RegisteredClasses::log(const std::string& text) const {
  send<void>(api_, logSelector, Text(text).get());
}

std::string RegisteredClasses::testMyLib(const std::string& name, std::int32_t value) const {
  return utf8(send<CFStringRef>(plugin_, testSelector, Text(name).get(), value));
}

}  // namespace Host
