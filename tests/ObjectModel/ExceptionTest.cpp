#include <gtest/gtest.h>
#include <object_model/Exception.h>

#include <exception>
#include <string>
#include <type_traits>

namespace object_model {
namespace {

TEST(ExceptionTest, WhatIsTheMessage) {
  EXPECT_EQ(Exception("no such thing").what(), "no such thing");
}

TEST(ExceptionTest, AnEmptyMessageStaysEmpty) { EXPECT_EQ(Exception("").what(), ""); }

TEST(ExceptionTest, KeepsZeroBytesOfTheMessage) {
  const std::string message("a\0b", 3);
  EXPECT_EQ(Exception(message).what(), message);
}

TEST(ExceptionTest, KeepsACopyOfTheMessage) {
  std::string message = "before";
  const Exception exception(message);
  message = "after";
  EXPECT_EQ(exception.what(), "before");
}

TEST(ExceptionTest, EachWhatIsAnIndependentCopy) {
  const Exception exception("a message that is too long for a small string");
  std::string first = exception.what();
  first[0] = 'X';
  EXPECT_EQ(exception.what(), "a message that is too long for a small string");
}

TEST(ExceptionTest, IsNoStandardException) {
  EXPECT_FALSE((std::is_base_of_v<std::exception, Exception>));
}

TEST(ExceptionTest, HasNoVirtualDestructor) {
  EXPECT_TRUE(std::is_polymorphic_v<Exception>);
  EXPECT_FALSE(std::has_virtual_destructor_v<Exception>);
}

TEST(ExceptionTest, IsNotMadeFromAStringByItself) {
  EXPECT_FALSE((std::is_convertible_v<std::string, Exception>));
}

}  // namespace
}  // namespace object_model
