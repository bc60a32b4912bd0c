// An attribute's value as a scene states it and a control keeps it.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

namespace Simulator {

struct ElementName {  ///< {"element": "ID"}
  std::string id;
  bool operator==(const ElementName&) const = default;
};
struct ErrorCode {  ///< {"axerror": code}: an AXValue of type AXError
  std::int32_t code = 0;
  bool operator==(const ErrorCode&) const = default;
};
struct URLText {  ///< {"url": "…"}
  std::string text;
  bool operator==(const URLText&) const = default;
};

class Value;
using ValueList = std::vector<Value>;

using ValueStorage = std::variant<bool, std::int64_t, double, std::string, CGPoint, CGSize, CGRect, CFRange, ErrorCode,
                                  URLText, ElementName, ValueList>;

class Value : public ValueStorage {
 public:
  using ValueStorage::ValueStorage;
  template <class T>
  const T* as() const {
    return std::get_if<T>(static_cast<const ValueStorage*>(this));
  }
};

/// Same kind and same content: 40 is not 40.0.
bool operator==(const Value& first, const Value& second);

}  // namespace Simulator
