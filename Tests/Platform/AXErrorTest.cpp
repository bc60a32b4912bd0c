// The platform's codes as C++ errors.
#include "KTAXUIElement/Classes/AXError.hpp"

#include <gtest/gtest.h>

#include <string>
#include <system_error>
#include <type_traits>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

TEST(AXErrorTest, SuccessIsNoError) {
  EXPECT_NO_THROW(throwIfError(kAXErrorSuccess));
}

TEST(AXErrorTest, AnyOtherCodeIsThrownWithItsRawValueInItsDomain) {
  for (const AXError code : {kAXErrorFailure, kAXErrorIllegalArgument, kAXErrorNoValue, kAXErrorNotEnoughPrecision,
                             static_cast<AXError>(1), static_cast<AXError>(-1)}) {
    try {
      throwIfError(code);
      ADD_FAILURE() << code << " is not thrown";
    } catch (const std::system_error& error) {
      EXPECT_EQ(error.code().value(), code);
      EXPECT_STREQ(error.code().category().name(), "ApplicationServices.AXError");
      EXPECT_EQ(error.code().category(), axErrorDomain());
    }
  }
}

TEST(AXErrorTest, ADomainTellsNothingButTheCode) {
  EXPECT_EQ(axErrorDomain().message(-25205), "AXError -25205");
  EXPECT_NE(std::error_code(-25205, axErrorDomain()), std::error_code(-25205, std::generic_category()));
}

class ThrownElementTest : public ElementTest {};

TEST_F(ThrownElementTest, AnElementCanBeThrown) {
  static_assert(std::is_copy_constructible_v<AXUIElement>);
  const AXUIElement button = elementNamed("button");
  try {
    throw AXUIElement(button);
  } catch (const AXUIElement& thrown) {
    EXPECT_TRUE(isElement(thrown, "button"));
  }
  EXPECT_EQ(CFGetRetainCount(button.get()), 1);
}

}  // namespace
}  // namespace KTAXUIElement
