#include <gmock/gmock.h>
#include <quillon/memory/NumberText.h>
#include <rapidcheck/gtest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace quillon::memory {
namespace {

using Complex = std::complex<double>;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

TEST(NumberTextTest, ShortestTextIsThatOfTheTypeItself) {
  EXPECT_EQ(shortestText(0.1), "0.1");
  EXPECT_EQ(shortestText(0.1F), "0.1");
  EXPECT_EQ(shortestText(static_cast<double>(0.1F)), "0.10000000149011612");
}

TEST(NumberTextTest, ShortestTextTakesAnExponentWhereThatIsShorter) {
  EXPECT_EQ(shortestText(100000.0), "1e+05");
  EXPECT_EQ(shortestText(280.0), "280");
  EXPECT_EQ(shortestText(-0.0), "-0");
}

TEST(NumberTextTest, IntegersAreWrittenInFull) {
  EXPECT_EQ(shortestText(std::numeric_limits<unsigned long>::max()), "18446744073709551615");
  EXPECT_EQ(shortestText(std::numeric_limits<long>::min()), "-9223372036854775808");
  EXPECT_EQ(shortestText(static_cast<signed char>(-128)), "-128");
  EXPECT_EQ(shortestText(static_cast<unsigned char>(65)), "65");
}

TEST(NumberTextTest, PeopleAreShownSixDigits) {
  EXPECT_EQ(textInDigits(1.0 / 3, SHOWN_DIGITS), "0.333333");
}

TEST(NumberTextTest, NaNHasNoSignAndInfinitiesHave) {
  EXPECT_EQ(shortestText(std::copysign(NOT_A_NUMBER, -1.0)), "nan");
  EXPECT_EQ(shortestText(INFINITE), "inf");
  EXPECT_EQ(textInDigits(-INFINITE, 6), "-inf");
  EXPECT_EQ(textInDigits(-NOT_A_NUMBER, 6), "nan");
}

TEST(NumberTextTest, BooleansAreWordsAndComplexNumbersPairs) {
  EXPECT_EQ(shortestText(true), "true");
  EXPECT_EQ(shortestText(false), "false");
  EXPECT_EQ(shortestText(Complex(1, -2.5)), "(1;-2.5)");
  EXPECT_EQ(shortestText(std::complex<float>(0.1F, -NOT_A_NUMBER)), "(0.1;nan)");
  EXPECT_EQ(textInDigits(Complex(1.0 / 3, INFINITE), 3), "(0.333;inf)");
}

TEST(NumberTextTest, DigitsAreSignificantOnesWithoutZerosAtTheEnd) {
  EXPECT_EQ(textInDigits(1234567.0, 6), "1.23457e+06");
  EXPECT_EQ(textInDigits(0.000125, 6), "0.000125");
  EXPECT_EQ(textInDigits(0.1F, 6), "0.1");
  EXPECT_EQ(textInDigits(2.5, 1), "2");
}

TEST(NumberTextTest, DigitsBeyondAnyUseAreTakenForTheNearestOfUse) {
  EXPECT_EQ(textInDigits(1.0 / 3, 0), "0.3");
  EXPECT_EQ(textInDigits(1.0 / 3, 400), "0.33333333333333331");
}

TEST(NumberTextTest, LongestNumbersFit) {
  const double longest = -std::numeric_limits<double>::max() / 3;
  char text[LONGEST_NUMBER];
  EXPECT_LE(writeShortest(Complex(longest, longest), text), text + LONGEST_NUMBER);
  EXPECT_LE(writeInDigits(Complex(longest, longest), 17, text), text + LONGEST_NUMBER);
}

template <class T, class Bits>
void requireToReadBack(Bits bits) {
  T value;
  std::memcpy(&value, &bits, sizeof(value));
  const std::string text = shortestText(value);
  T read = 0;
  RC_ASSERT(std::from_chars(text.data(), text.data() + text.size(), read).ec == std::errc());
  RC_ASSERT((std::isnan(value) ? std::isnan(read) : std::memcmp(&read, &value, sizeof(read)) == 0));
}

RC_GTEST_PROP(NumberTextProperty, ShortestTextReadsBack, (unsigned long bits)) {
  requireToReadBack<double>(bits);
  requireToReadBack<float>(static_cast<unsigned int>(bits));
}

}  // namespace
}  // namespace quillon::memory
