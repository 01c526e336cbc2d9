#include <gtest/gtest.h>
#include <object_model/ElementTypeHelper.h>
#include <object_model/InvalidCall.h>

#include <exception>
#include <string>
#include <type_traits>

#include "InvalidCallAt.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

void callWrongly() { helper::sizeOfElementType(ElementType::Dictionary); }

const char* const MESSAGE = "Invalid call at ObjectModel/src/ElementTypeHelper.cpp (34)";

TEST(InvalidCallTest, WhatIsTheMessage) {
  EXPECT_EQ(InvalidCall("plain text").what(), "plain text");
}

TEST(InvalidCallTest, WhatTwiceGivesTwoEqualIndependentStrings) {
  try {
    callWrongly();
    FAIL() << "nothing was thrown";
  } catch (const InvalidCall& error) {
    std::string first = error.what();
    const std::string second = error.what();
    EXPECT_EQ(first, MESSAGE);
    EXPECT_EQ(second, MESSAGE);
    first.clear();
    EXPECT_EQ(error.what(), MESSAGE);
    EXPECT_EQ(second, MESSAGE);
  }
}

TEST(InvalidCallTest, IsCaughtAsExceptionButNotAsStandardException) {
  std::string caughtBy = "nobody";
  try {
    callWrongly();
  } catch (const std::exception&) {
    caughtBy = "standard exceptions";
  } catch (const Exception& error) {
    caughtBy = "Exception: " + error.what();
  }
  EXPECT_EQ(caughtBy, std::string("Exception: ") + MESSAGE);
}

TEST(InvalidCallTest, IsNotMadeFromAStringByItself) {
  EXPECT_FALSE((std::is_convertible_v<std::string, InvalidCall>));
}

TEST(InvalidCallTest, AMessageWithALocationHasTheFileAndTheLineInParentheses) {
  EXPECT_EQ(test::thrownBy<InvalidCall>([] { throwInvalidCallAt("some/Source.cpp", 7); }),
            "Invalid call at some/Source.cpp (7)");
}

}  // namespace
}  // namespace object_model
