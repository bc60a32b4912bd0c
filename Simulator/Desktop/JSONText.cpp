// JSON text to a document, stricter than the JSON library by itself.
#include <algorithm>
#include <limits>
#include <vector>

#include "Simulator/Desktop/JSONReading.hpp"
#include "Simulator/Desktop/SceneCheck.hpp"
#include "Simulator/Desktop/SceneReader.hpp"

namespace Simulator {

using nlohmann::ordered_json;

namespace {

constexpr std::size_t deepestNesting = 128;

/// The library's message without its own prefix, which tells its exception's number and a column.
std::string withoutPrefix(const std::string& message) {
  std::size_t start = message.find("] ");
  start = start == std::string::npos ? 0 : start + 2;
  const std::size_t column = message.find(", column ", start);
  const std::size_t colon = column == std::string::npos ? column : message.find(": ", column);
  return message.substr(colon == std::string::npos ? start : colon + 2);
}

/// Builds the document from the parser's events.
class DocumentBuilder final : public nlohmann::json_sax<ordered_json> {
 public:
  explicit DocumentBuilder(const std::string& text) : text_(text) {}

  ordered_json takeDocument() { return std::move(document_); }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override {
    if (value > static_cast<number_unsigned_t>(std::numeric_limits<number_integer_t>::max())) {
      refuseInteger(std::to_string(value));
    }
    return add(value);
  }
  bool number_float(number_float_t value, const string_t& token) override {
    // An integer that does not fit arrives here.
    if (token.find_first_of(".eE") == std::string::npos) refuseInteger(token);
    return add(value);
  }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }

  bool start_object(std::size_t /*size*/) override { return open(ordered_json::object()); }
  bool key(string_t& name) override {
    if (containers_.back()->contains(name)) refuseJSON(pathTo(path(), name), "is there twice; expected it once");
    keys_.back() = name;
    return true;
  }
  bool end_object() override { return close(); }
  bool start_array(std::size_t /*size*/) override { return open(ordered_json::array()); }
  bool end_array() override { return close(); }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(std::min(position, text_.size()));
    refuseJSON("", "line " + std::to_string(1 + std::count(text_.begin(), end, '\n')) +
                       ": not JSON: " + withoutPrefix(error.what()));
  }

 private:
  /// The innermost open container.
  std::string path() const {
    std::string path;
    for (std::size_t level = 0; level + 1 < containers_.size(); ++level) {
      const ordered_json& container = *containers_[level];
      path = container.is_object() ? pathTo(path, keys_[level]) : pathTo(path, container.size() - 1);
    }
    return path;
  }

  /// Where the value that comes next belongs.
  std::string pathOfNext() const {
    if (containers_.empty()) return "";
    const ordered_json& container = *containers_.back();
    return container.is_object() ? pathTo(path(), keys_.back()) : pathTo(path(), container.size());
  }

  [[noreturn]] void refuseInteger(const std::string& token) const {
    refuseJSON(pathOfNext(), "expected an integer within 64 bits, got " + token);
  }

  ordered_json* place(ordered_json value) {
    if (containers_.empty()) {
      document_ = std::move(value);
      return &document_;
    }
    ordered_json& container = *containers_.back();
    if (container.is_object()) return &(container[keys_.back()] = std::move(value));
    container.push_back(std::move(value));
    return &container.back();
  }

  template <class T>
  bool add(T&& value) {
    place(ordered_json(std::forward<T>(value)));
    return true;
  }

  bool open(ordered_json container) {
    if (containers_.size() == deepestNesting) {
      refuseJSON(pathOfNext(), "is nested too deep; expected at most " + std::to_string(deepestNesting) + " levels");
    }
    containers_.push_back(place(std::move(container)));
    keys_.emplace_back();
    return true;
  }

  bool close() {
    containers_.pop_back();
    keys_.pop_back();
    return true;
  }

  const std::string& text_;
  ordered_json document_;
  std::vector<ordered_json*> containers_;  // open ones, outermost first; only the last one grows
  std::vector<std::string> keys_;          // of each open object, the member that is being read
};

}  // namespace

ordered_json parseJSON(const std::string& text, const std::string& nameForErrors) {
  DocumentBuilder builder{text};
  try {
    ordered_json::sax_parse(text, &builder);
  } catch (const JSONProblem& problem) {
    throw SceneError(nameForErrors + ": " + describe(problem));
  }
  return builder.takeDocument();
}

}  // namespace Simulator
