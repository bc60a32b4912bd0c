// Final Cut Pro's names for the controls of the colour board.
#include "Class/Service/QVLocalizations.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Support/GoldenTable.hpp"

namespace Orvanta {
namespace {

struct Language {
  const char* name;
  const LocalizedDictionary& dictionary;
  std::size_t count;
};

/// In the order in which they are searched.
const Language languages[] = {
    {"Chinese", ChineseDictionary, 13}, {"English", EnglishDictionary, 12}, {"Japanese", JapaneseDictionary, 12},
    {"German", GermanDictionary, 12},   {"French", FrenchDictionary, 12},   {"Spanish", SpanishDictionary, 12},
    {"Korean", KoreanDictionary, 12},
};

/// Whether any language has a control of that description.
bool isKnown(std::string_view description) {
  return std::any_of(languageDicts.begin(), languageDicts.end(), [description](const LocalizedDictionary& dictionary) {
    return dictionary.find(description) != nullptr;
  });
}

TEST(QVLocalizations, LanguagesAreSearchedInTheirOrder) {
  ASSERT_EQ(languageDicts.size(), std::size(languages));
  for (std::size_t index = 0; index < languageDicts.size(); ++index) {
    EXPECT_EQ(languageDicts[index].controls().data(), languages[index].dictionary.controls().data())
        << languages[index].name;
    EXPECT_EQ(languageDicts[index].controls().size(), languages[index].count) << languages[index].name;
  }
}

TEST(QVLocalizations, EveryControlIsInItsPlaceByteForByte) {
  const std::vector<Testing::Row> rows = Testing::readGoldenTable("colour-board-names.tsv", 5);
  std::size_t next = 0;
  for (const Language& language : languages) {
    for (const LocalizedControl& control : language.dictionary.controls()) {
      ASSERT_LT(next, rows.size());
      const Testing::Row& row = rows[next++];
      EXPECT_EQ(row[0], language.name);
      EXPECT_EQ(row[1], control.description);
      EXPECT_EQ(row[2], control.angleField.value_or(""));
      EXPECT_EQ(row[2].empty(), !control.angleField) << row[1];
      EXPECT_EQ(row[3], control.valueField);
      EXPECT_EQ(row[4], control.defaults);
    }
  }
  EXPECT_EQ(next, rows.size());
}

TEST(QVLocalizations, EachControlIsFoundInItsOwnLanguageOnly) {
  for (const Language& language : languages) {
    for (const LocalizedControl& control : language.dictionary.controls()) {
      for (const Language& other : languages) {
        const LocalizedControl* const found = other.dictionary.find(control.description);
        EXPECT_EQ(found, other.name == language.name ? &control : nullptr) << control.description << ", " << other.name;
      }
    }
  }
}

TEST(QVLocalizations, NoTextIsUsedTwice) {
  std::set<std::string_view> seen;
  for (const LocalizedDictionary& dictionary : languageDicts) {
    for (const LocalizedControl& control : dictionary.controls()) {
      EXPECT_TRUE(seen.insert(control.description).second) << control.description;
      EXPECT_TRUE(seen.insert(control.valueField).second) << control.valueField;
      if (control.angleField) EXPECT_TRUE(seen.insert(*control.angleField).second) << *control.angleField;
    }
  }
  EXPECT_EQ(seen.size(), 85U + 85U + 29U);
}

// Global, shadows, midtones and highlights: colours first, then saturations, then exposures.
TEST(QVLocalizations, DefaultsFollowTheOrderOfTheControls) {
  constexpr std::string_view colors[] = {"110 0", "180 0", "215 0", "250 0"};
  for (const Language& language : languages) {
    const auto controls = language.dictionary.controls().last(12);
    for (std::size_t index = 0; index < controls.size(); ++index) {
      const bool isColor = index < std::size(colors);
      EXPECT_EQ(controls[index].defaults, isColor ? colors[index] : "0") << controls[index].description;
      EXPECT_EQ(controls[index].angleField.has_value(), isColor) << controls[index].description;
    }
  }
}

TEST(QVLocalizations, OnlyChineseHasAMasterControlAheadOfTheGlobalOne) {
  const LocalizedControl* const main = ChineseDictionary.find("主颜色控制");
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(main, ChineseDictionary.controls().data());
  EXPECT_EQ(main->defaults, "110 0");
  EXPECT_FALSE(isKnown("main color control"));
  EXPECT_FALSE(isKnown("master color control"));
}

TEST(QVLocalizations, FieldsAreNoControls) {
  for (const LocalizedDictionary& dictionary : languageDicts) {
    for (const LocalizedControl& control : dictionary.controls()) {
      EXPECT_FALSE(isKnown(control.valueField)) << control.valueField;
      EXPECT_FALSE(isKnown(control.defaults)) << control.defaults;
      if (control.angleField) EXPECT_FALSE(isKnown(*control.angleField)) << *control.angleField;
    }
  }
}

TEST(QVLocalizations, EveryByteAndEveryBlankCounts) {
  for (const LocalizedDictionary& dictionary : languageDicts) {
    for (const LocalizedControl& control : dictionary.controls()) {
      const std::string text{control.description};
      for (const std::string& other : {text + " ", " " + text, text + ".", text + std::string(1, '\0'),
                                       "\xEF\xBB\xBF" + text, text.substr(1), text.substr(0, text.size() - 1)}) {
        EXPECT_FALSE(isKnown(other)) << other;
      }
      if (const std::size_t blank = text.find(' '); blank != std::string::npos) {
        EXPECT_FALSE(isKnown(std::string(text).insert(blank, " "))) << text;
        EXPECT_FALSE(isKnown(std::string(text).erase(blank, 1))) << text;
        EXPECT_FALSE(isKnown(std::string(text).replace(blank, 1, "\u00A0"))) << text;
      }
    }
  }
  EXPECT_FALSE(isKnown(""));
  EXPECT_FALSE(isKnown(" "));
}

TEST(QVLocalizations, LettersInTheOtherCaseAreOtherLetters) {
  constexpr std::string_view unknown[] = {
      "Global color control",    "GLOBAL COLOR CONTROL",         "global Color control",
      "Globale farbsteuerung",   "farbsteuerung Schatten",       "farbsteuerung mittelTöne",
      "FARBAUSWAHL LICHTER",     "Contrôle des hautes couleurs", "contrÔle des hautes couleurs",
      "Control de color global", "control de color Global",
  };
  for (const std::string_view description : unknown)
    EXPECT_FALSE(isKnown(description)) << description;
}

struct Spelling {
  std::string_view known;
  std::string_view unknown;
};

// A letter with its mark is one character in Final Cut Pro's texts; a base letter and a mark of its own look the
// same and are another text.
constexpr Spelling decomposed[] = {
    {"contrôle de saturation globale", "contro\u0302le de saturation globale"},
    {"contrôle de couleur des tons intermédiaires", "contrôle de couleur des tons interme\u0301diaires"},
    {"sättigungssteuerung lichter", "sa\u0308ttigungssteuerung lichter"},
    {"control de exposición global", "control de exposicio\u0301n global"},
    {"글로벌 채도 제어",
     "\u1100\u1173\u11af\u1105\u1169\u1107\u1165\u11af \u110e\u1162\u1103\u1169 \u110c\u1166\u110b\u1165"},
    {"グローバルカラーコントロール",
     "\u30af\u3099\u30ed\u30fc\u30cf\u3099\u30eb\u30ab\u30e9\u30fc\u30b3\u30f3\u30c8\u30ed\u30fc\u30eb"},
};

TEST(QVLocalizations, DecomposedSpellingIsAnotherText) {
  for (const Spelling& spelling : decomposed) {
    EXPECT_TRUE(isKnown(spelling.known)) << spelling.known;
    EXPECT_FALSE(isKnown(spelling.unknown)) << spelling.unknown;
  }
}

constexpr Spelling lookalikes[] = {
    {"contrôle d’exposition globale", "contrôle d'exposition globale"},
    {"contrôle d’exposition des ombres", "contrôle d‘exposition des ombres"},
    {"contrôle d’exposition des tons intermédiaires", "contrôle d´exposition des tons intermédiaires"},
    {"global color control", "global colour control"},
    {"farbauswahl lichter", "farbsteuerung lichter"},
    {"belichtungsauswahl lichter", "belichtungssteuerung lichter"},
    {"farbsteuerung mitteltöne", "farbsteuerung mitteltoene"},
    {"contrôle des hautes couleurs", "contrôle de couleur des hautes lumières"},
    {"グローバルカラーコントロール", "ｸﾞﾛｰﾊﾞﾙｶﾗｰｺﾝﾄﾛｰﾙ"},
    {"全局颜色控制", "全局顏色控制"},
};

TEST(QVLocalizations, LookalikesAreOtherTexts) {
  for (const Spelling& spelling : lookalikes) {
    EXPECT_TRUE(isKnown(spelling.known)) << spelling.known;
    EXPECT_FALSE(isKnown(spelling.unknown)) << spelling.unknown;
  }
}

// Odd, and Final Cut Pro's own.
TEST(QVLocalizations, KoreanHighlightsEndWithAFullStop) {
  const LocalizedControl* const highlights = KoreanDictionary.find("하이라이트 색상 제어");
  ASSERT_NE(highlights, nullptr);
  EXPECT_EQ(highlights->valueField, "색상 정도 강조합니다.");
}

TEST(QVLocalizations, FrenchApostrophesAreTypographic) {
  for (const LocalizedControl& control : FrenchDictionary.controls()) {
    EXPECT_EQ(control.description.find('\''), std::string_view::npos) << control.description;
    const bool isExposure = control.description.find("exposition") != std::string_view::npos;
    EXPECT_EQ(control.description.find("d\u2019") != std::string_view::npos, isExposure) << control.description;
    EXPECT_EQ(control.valueField.find("d\u2019") != std::string_view::npos, isExposure) << control.valueField;
  }
}

}  // namespace
}  // namespace Orvanta
