#include <gtest/gtest.h>
#include <object_model/Tuple.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <exception>

namespace quillon::memory {
namespace {

TEST(InvalidCallTest, IsCaughtAsTheContractsWithItsSentence) {
  try {
    throw InvalidCall("what was wrong");
  } catch (const object_model::InvalidCall& error) {
    EXPECT_EQ(error.what(), "what was wrong");
    return;
  }
}

TEST(InvalidCallTest, IsCaughtAsTheContractsRootWithItsSentence) {
  try {
    throw InvalidCall("what was wrong");
  } catch (const object_model::Exception& error) {
    EXPECT_EQ(error.what(), "what was wrong");
  }
}

TEST(InvalidCallTest, IsCaughtAsAStandardExceptionWithItsSentence) {
  try {
    throw InvalidCall("what was wrong");
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "what was wrong");
  }
}

TEST(InvalidCallTest, IsALogicError) {
  EXPECT_THROW(throw InvalidCall("what was wrong"), std::logic_error);
}

TEST(InvalidCallTest, SaysTheStandardSentenceItself) {
  const InvalidCall error("what was wrong");
  const char* const text = error.what();
  EXPECT_STREQ(text, "what was wrong");
}

TEST(InvalidCallDeathTest, ReachesTheTerminateHandlerWithItsSentence) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const DoubleArray array("a", {}, {0});
  const auto readWrongly = [&array]() noexcept { array.getValueAsInt(object_model::Tuple()); };
  EXPECT_DEATH(readWrongly(),
               "what\\(\\): +Array 'a' holds Double elements and cannot be read as Int");
}

}  // namespace
}  // namespace quillon::memory
