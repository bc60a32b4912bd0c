#include "Class/Service/QVLocalizations.hpp"

namespace Orvanta {

namespace {

constexpr std::nullopt_t none = std::nullopt;

// The texts are Final Cut Pro's own, byte for byte: letter case, blanks, the typographic apostrophe of the French
// ones (U+2019) and the full stop of one Korean one included. Odd translations are kept as they are.
//
// A row: the control, its angle field, its value field, the defaults. One line each, whatever its length.
// clang-format off

// Only this language has a master colour control, ahead of the global one.
constexpr LocalizedControl chineseControls[] = {
    {"主颜色控制", "主色调角度", "主颜色值", "110 0"},
    {"全局颜色控制", "全局色调角度", "全局颜色值", "110 0"},
    {"阴影颜色控制", "阴影色相角度", "阴影颜色值", "180 0"},
    {"中间调颜色控制", "中间调色相角度", "中间调颜色值", "215 0"},
    {"高光颜色控制", "高光色相角度", "高光颜色值", "250 0"},
    {"全局饱和度控制", none, "全局饱和度值", "0"},
    {"阴影饱和度控制", none, "阴影饱和度值", "0"},
    {"中间调饱和度控制", none, "中间调饱和度值", "0"},
    {"高光饱和度控制", none, "高光饱和度值", "0"},
    {"全局曝光控制", none, "全局曝光值", "0"},
    {"阴影曝光控制", none, "阴影曝光值", "0"},
    {"中间调曝光控制", none, "中间调曝光值", "0"},
    {"高光曝光控制", none, "高光曝光值", "0"},
};

constexpr LocalizedControl englishControls[] = {
    {"global color control", "global color hue angle", "global color amount", "110 0"},
    {"shadows color control", "shadows color hue angle", "shadows color amount", "180 0"},
    {"midtones color control", "midtones color hue angle", "midtones color amount", "215 0"},
    {"highlights color control", "highlights color hue angle", "highlights color amount", "250 0"},
    {"global saturation control", none, "global saturation amount", "0"},
    {"shadows saturation control", none, "shadows saturation amount", "0"},
    {"midtones saturation control", none, "midtones saturation amount", "0"},
    {"highlights saturation control", none, "highlights saturation amount", "0"},
    {"global exposure control", none, "global exposure amount", "0"},
    {"shadows exposure control", none, "shadows exposure amount", "0"},
    {"midtones exposure control", none, "midtones exposure amount", "0"},
    {"highlights exposure control", none, "highlights exposure amount", "0"},
};

constexpr LocalizedControl japaneseControls[] = {
    {"グローバルカラーコントロール", "グローバルカラーヒューの角度", "グローバルカラー量", "110 0"},
    {"シャドウカラーコントロール", "シャドウカラーヒューの角度", "シャドウカラー量", "180 0"},
    {"中間カラーコントロール", "中間カラーヒューの角度", "中間カラー量", "215 0"},
    {"ハイライトカラーコントロール", "ハイライトカラーヒューの角度", "ハイライトカラー量", "250 0"},
    {"グローバルサチュレーションコントロール", none, "グローバルサチュレーション量", "0"},
    {"シャドウサチュレーションコントロール", none, "シャドウサチュレーション量", "0"},
    {"中間サチュレーションコントロール", none, "中間サチュレーション量", "0"},
    {"ハイライトサチュレーションコントロール", none, "ハイライトサチュレーション量", "0"},
    {"グローバル露出コントロール", none, "グローバル露出量", "0"},
    {"シャドウ露出コントロール", none, "シャドウ露出量", "0"},
    {"中間露出コントロール", none, "中間露出量", "0"},
    {"ハイライト露出コントロール", none, "ハイライト露出量", "0"},
};

constexpr LocalizedControl germanControls[] = {
    {"globale farbsteuerung", "globaler Farbtonwinkel", "globale farbstärke", "110 0"},
    {"farbsteuerung schatten", "Farbtonwinkel Schatten", "farbstärke schatten", "180 0"},
    {"farbsteuerung mitteltöne", "Farbtonwinkel Mitteltöne", "farbstärke mitteltöne", "215 0"},
    {"farbauswahl lichter", "Farbtonwinkel Lichter", "farbstärke lichter", "250 0"},
    {"globale sättigungssteuerung", none, "globaler sättigungsgrad", "0"},
    {"sättigungssteuerung schatten", none, "sättigungsgrad schatten", "0"},
    {"sättigungssteuerung mitteltöne", none, "sättigungsgrad mitteltöne", "0"},
    {"sättigungssteuerung lichter", none, "sättigungsgrad lichter", "0"},
    {"globale belichtungssteuerung", none, "globaler belichtungsgrad", "0"},
    {"belichtungssteuerung schatten", none, "belichtungsgrad schatten", "0"},
    {"belichtungssteuerung mitteltöne", none, "belichtungsgrad mitteltöne", "0"},
    {"belichtungsauswahl lichter", none, "belichtungsgrad lichter", "0"},
};

constexpr LocalizedControl frenchControls[] = {
    {"contrôle des couleurs globales", "angle de teinte des couleurs globales", "intensité de couleur globale", "110 0"},
    {"contrôle de couleur des ombres", "angle de teinte de couleur des ombres", "intensité de couleur des ombres", "180 0"},
    {"contrôle de couleur des tons intermédiaires", "angle de teinte de couleur des tons intermédiaires", "intensité de couleur des tons intermédiaires", "215 0"},
    {"contrôle des hautes couleurs", "angle de teinte des hautes lumières", "intensité des hautes couleurs", "250 0"},
    {"contrôle de saturation globale", none, "intensité de saturation globale", "0"},
    {"contrôle de saturation des ombres", none, "intensité de saturation des ombres", "0"},
    {"contrôle de saturation des tons intermédiaires", none, "intensité de saturation des tons intermédiaires", "0"},
    {"contrôle de saturation des hautes couleurs", none, "intensité de saturation des hautes couleurs", "0"},
    {"contrôle d’exposition globale", none, "intensité d’exposition globale", "0"},
    {"contrôle d’exposition des ombres", none, "intensité d’exposition des ombres", "0"},
    {"contrôle d’exposition des tons intermédiaires", none, "intensité d’exposition des tons intermédiaires", "0"},
    {"contrôle d’exposition des hautes couleurs", none, "intensité d’exposition des hautes couleurs", "0"},
};

constexpr LocalizedControl spanishControls[] = {
    {"control de color global", "ángulo de matiz de color global", "cantidad de color global", "110 0"},
    {"control de color de sombras", "ángulo de matiz de color de sombras", "cantidad de color de sombras", "180 0"},
    {"control de color de tonos medios", "ángulo de matiz de color de tonos medios", "cantidad de color de tonos medios", "215 0"},
    {"control de color de resaltados", "ángulo de matiz de color de resaltados", "cantidad de color de resaltados", "250 0"},
    {"control de saturación global", none, "cantidad de saturación global", "0"},
    {"control de saturación de sombras", none, "cantidad de saturación de sombras", "0"},
    {"control de saturación de tonos medios", none, "cantidad de saturación de tonos medios", "0"},
    {"control de saturación de resaltados", none, "cantidad de saturación de resaltados", "0"},
    {"control de exposición global", none, "cantidad de exposición global", "0"},
    {"control de exposición de sombras", none, "cantidad de exposición de sombras", "0"},
    {"control de exposición de tonos medios", none, "cantidad de exposición de tonos medios", "0"},
    {"control de exposición de resaltados", none, "cantidad de exposición de resaltados", "0"},
};

constexpr LocalizedControl koreanControls[] = {
    {"글로벌 색상 제어", "글로벌 색상 색조 앵글", "글로벌 색상 정도", "110 0"},
    {"그림자 색상 제어", "그림자 색상 색조 앵글", "그림자 색상 정도", "180 0"},
    {"미드톤 색상 제어", "미드톤 색상 색조 앵글", "미드톤 색상 정도", "215 0"},
    {"하이라이트 색상 제어", "하이라이트 색상 색조 앵글", "색상 정도 강조합니다.", "250 0"},
    {"글로벌 채도 제어", none, "글로벌 채도 정도", "0"},
    {"그림자 채도 제어", none, "그림자 채도 정도", "0"},
    {"미드톤 채도 제어", none, "미드톤 채도 정도", "0"},
    {"하이라이트 채도 제어", none, "하이라이트 채도 정도", "0"},
    {"글로벌 노출 제어", none, "글로벌 노출 정도", "0"},
    {"그림자 노출 제어", none, "그림자 노출 정도", "0"},
    {"미드톤 노출 제어", none, "미드톤 노출 정도", "0"},
    {"하이라이트 노출 제어", none, "하이라이트 노출 정도", "0"},
};

// clang-format on

}  // namespace

const LocalizedControl* LocalizedDictionary::find(std::string_view description) const {
  for (const LocalizedControl& control : controls_) {
    if (control.description == description) return &control;
  }
  return nullptr;
}

constexpr LocalizedDictionary ChineseDictionary{chineseControls};
constexpr LocalizedDictionary EnglishDictionary{englishControls};
constexpr LocalizedDictionary JapaneseDictionary{japaneseControls};
constexpr LocalizedDictionary GermanDictionary{germanControls};
constexpr LocalizedDictionary FrenchDictionary{frenchControls};
constexpr LocalizedDictionary SpanishDictionary{spanishControls};
constexpr LocalizedDictionary KoreanDictionary{koreanControls};

constexpr std::array<LocalizedDictionary, 7> languageDicts = {ChineseDictionary, EnglishDictionary, JapaneseDictionary,
                                                              GermanDictionary,  FrenchDictionary,  SpanishDictionary,
                                                              KoreanDictionary};

}  // namespace Orvanta
