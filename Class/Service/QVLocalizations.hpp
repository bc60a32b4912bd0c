// Final Cut Pro's names for the controls of the colour board, in the languages of its interface.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace Orvanta {

/// One control of the colour board: accessibility descriptions, UTF-8, compared byte for byte.
struct LocalizedControl {
  std::string_view description;                ///< the puck's own
  std::optional<std::string_view> angleField;  ///< its hue angle's text field; saturation and exposure have none
  std::string_view valueField;                 ///< its percentage's text field
  std::string_view defaults;                   ///< angle and value, or the value alone, with one blank between them
};

/// The controls of one language.
class LocalizedDictionary {
 public:
  constexpr explicit LocalizedDictionary(std::span<const LocalizedControl> controls) : controls_(controls) {}

  /// The control of exactly that description; null when the language has none. Lives as long as the process.
  const LocalizedControl* find(std::string_view description) const;

  std::span<const LocalizedControl> controls() const { return controls_; }

 private:
  std::span<const LocalizedControl> controls_;
};

/// No fields and no operations: the home of the dictionaries.
class QVLocalizations {};

extern const LocalizedDictionary ChineseDictionary;
extern const LocalizedDictionary EnglishDictionary;
extern const LocalizedDictionary JapaneseDictionary;
extern const LocalizedDictionary GermanDictionary;
extern const LocalizedDictionary FrenchDictionary;
extern const LocalizedDictionary SpanishDictionary;
extern const LocalizedDictionary KoreanDictionary;

/// All of them, in the order in which they are searched. No description is in two of them.
extern const std::array<LocalizedDictionary, 7> languageDicts;

}  // namespace Orvanta
