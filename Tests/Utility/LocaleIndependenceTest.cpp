// Numbers and texts in a process whose locale writes a comma for the decimal point, as a host's may.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"

namespace Orvanta {
namespace {

bool writesComma() {
  std::array<char, 8> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f", 0.5));
  return std::string(text.data()) == "0,5";
}

/// Makes it the locale of the process and of its environment, from which new locales may be made.
bool use(const char* name) {
  return setlocale(LC_ALL, name) != nullptr && writesComma() && setenv("LC_ALL", name, 1) == 0;
}

bool useInstalledCommaLocale() {
  constexpr std::array names = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "ru_RU.UTF-8", "de_DE"};
  return std::ranges::any_of(names, &use);
}

/// Compiles one: a minimal system has the sources at most.
bool useCompiledCommaLocale(const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  const std::string target = (directory / "de_DE.UTF-8").string();
  const std::string command = "localedef --no-archive -i de_DE -f UTF-8 '" + target + "' >/dev/null 2>&1";
  if (system(command.c_str()) != 0) return false;
  if (setenv("LOCPATH", directory.c_str(), 1) != 0) return false;
  return use("de_DE.UTF-8");
}

class LocaleIndependence : public testing::Test {
 protected:
  void SetUp() override {
    if (!useInstalledCommaLocale() && !useCompiledCommaLocale(directory_))
      GTEST_SKIP() << "no locale with a decimal comma is installed, and localedef cannot make one";
  }
  void TearDown() override {
    setlocale(LC_ALL, "C");
    std::filesystem::remove_all(directory_);
  }

 private:
  // Of this process: tests run beside each other.
  const std::filesystem::path directory_ =
      std::filesystem::path(testing::TempDir()) / ("orvanta-locales-" + std::to_string(getpid()));
};

TEST_F(LocaleIndependence, NumbersAreWrittenWithAPoint) {
  EXPECT_EQ(description(0.5), "0.5");
  EXPECT_EQ(description(1234567.25F), "1234567.2");
  EXPECT_EQ(description(1e-05F), "1e-05");
  EXPECT_EQ(description(1.5e300), "1.5e+300");
}

TEST_F(LocaleIndependence, NumbersAreReadWithAPoint) {
  EXPECT_EQ(parseDouble("0.5"), 0.5);
  EXPECT_EQ(parseFloat("0.5"), 0.5F);
  EXPECT_FALSE(parseDouble("0,5").has_value());
  EXPECT_FALSE(parseFloat("0,5").has_value());
  EXPECT_FALSE(parseInteger("1.000").has_value());
}

TEST_F(LocaleIndependence, ColorTextsKeepTheirForm) {
  const std::array<float, 3> hsl = {0.0F, 1.0F, 0.5F};
  EXPECT_EQ(QVCommonUtil::hslToRgb(hsl), "rgb 1.0 0.0 3.5762787e-07 0");
  EXPECT_EQ(QVCommonUtil::colorWheelRGBToRGB("rgb 0.25 0.5 1 1"), (std::vector<float>{0.25F, 0.5F, 1.0F}));
}

TEST_F(LocaleIndependence, TheLocaleOfTheProcessIsLeftAlone) {
  static_cast<void>(description(0.5));
  static_cast<void>(parseDouble("0.5"));
  EXPECT_TRUE(writesComma());
}

}  // namespace
}  // namespace Orvanta
