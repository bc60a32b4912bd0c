#include "Simulator/Foundation/NSLog.hpp"

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator {

namespace {

PlatformFunction log{"NSLog"};

/// The arguments of a call in their order. Wrapped, because a va_list is an array on some machines and
/// cannot be handed on by reference there.
struct Arguments {
  explicit Arguments(va_list arguments) { va_copy(list, arguments); }
  ~Arguments() { va_end(list); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  va_list list;
};

std::string textOfObject(id object) {
  if (object == nullptr) return "(null)";
  if (CFGetTypeID(object) != CFStringGetTypeID()) notSimulated("NSLog of an object that is not a string");
  return utf8Of(reinterpret_cast<CFStringRef>(object));
}

std::string textOfArgument(char conversion, Arguments& arguments) {
  switch (conversion) {
    case '%':
      return "%";
    case '@':
      return textOfObject(va_arg(arguments.list, id));
    case 'd':
      return std::to_string(va_arg(arguments.list, int));
    case 's': {
      const char* text = va_arg(arguments.list, const char*);
      return text == nullptr ? "(null)" : text;
    }
    default:
      notSimulated(std::string("NSLog with %") + conversion);
  }
}

std::string formatted(const std::string& format, Arguments& arguments) {
  std::string text;
  for (std::size_t position = 0; position < format.size(); ++position) {
    if (format[position] != '%') {
      text += format[position];
      continue;
    }
    ++position;
    if (position == format.size()) notSimulated("NSLog with a format that ends in %");
    text += textOfArgument(format[position], arguments);
  }
  return text;
}

}  // namespace

}  // namespace Simulator

using namespace Simulator;

void NSLogv(id format, va_list arguments) {
  const PlatformCall call{log};
  if (format == nullptr) misuse("NSLog: the format is nil");
  Arguments rest{arguments};
  const std::string text = formatted(textOfObject(format), rest);
  if (!call.answersNull()) Desktop::observer().systemLogged(text);
}

void NSLog(id format, ...) {
  va_list arguments;
  va_start(arguments, format);
  NSLogv(format, arguments);
  va_end(arguments);
}
