#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <vector>

#include "IO/ClassicStream.h"

namespace object_model {
namespace {

template <class T>
std::string classic(const T& value, std::size_t width = 0) {
  ClassicStream stream;
  stream.padNext(width);
  stream << value;
  return stream.takeText();
}

/// What a standard stream writes; the one that is slow and right by definition.
class Standard {
 public:
  Standard() { m_stream.imbue(std::locale::classic()); }

  template <class T>
  const std::string& operator()(const T& value, int width = 0) {
    m_stream.str("");
    m_stream << std::left << std::setw(width) << value;
    m_text = m_stream.str();
    return m_text;
  }

 private:
  std::ostringstream m_stream;
  std::string m_text;
};

double fromBits(unsigned long bits) {
  double value;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

TEST(ClassicStream, WritesSpecialNumbersAsAStreamDoes) {
  constexpr double INF = std::numeric_limits<double>::infinity();
  constexpr double QUIET = std::numeric_limits<double>::quiet_NaN();
  using Limits = std::numeric_limits<double>;
  Standard standard;
  for (const double value : {0.0,
                             -0.0,
                             INF,
                             -INF,
                             QUIET,
                             std::copysign(QUIET, -1.0),
                             Limits::max(),
                             Limits::lowest(),
                             Limits::min(),
                             Limits::denorm_min(),
                             -Limits::denorm_min(),
                             Limits::epsilon(),
                             999999.0,
                             999999.4,
                             999999.5,
                             1e6,
                             1e5,
                             123456.5,
                             1234565.0,
                             0.0001,
                             0.00009999995,
                             0.000099999949,
                             9.9999949e-5,
                             1e-5,
                             1e22,
                             1e23,
                             -1e34,
                             2.5,
                             0.1,
                             1.0 / 3}) {
    EXPECT_EQ(classic(value), standard(value));
  }
}

TEST(ClassicStream, WritesEveryPowerOfTwoAndTenAsAStreamDoes) {
  Standard standard;
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    ASSERT_EQ(classic(power), standard(power)) << exponent;
  }
  for (int exponent = -320; exponent <= 308; ++exponent) {
    const double power = std::pow(10.0, exponent);
    for (const double value : {power, std::nextafter(power, 0), std::nextafter(power, 1e308),
                               power * 9.999995, power * 1.000005}) {
      ASSERT_EQ(classic(value), standard(value)) << exponent;
    }
  }
}

/// How many numbers the random tests try; the environment variable asks for more.
unsigned long numberOfTries() {
  const char* asked = std::getenv("QUILLON_TRIES");
  return asked == nullptr ? 300000UL : std::stoul(asked);
}

TEST(ClassicStream, WritesRandomBitPatternsAsAStreamDoes) {
  Standard standard;
  std::mt19937_64 random(20260101);
  for (unsigned long i = 0; i < numberOfTries(); ++i) {
    const double value = fromBits(random());
    ASSERT_EQ(classic(value), standard(value)) << std::hexfloat << value;
  }
}

// Where six digits end in a 5, rounding is decided by what a double really holds.
TEST(ClassicStream, RoundsDecimalTiesAsAStreamDoes) {
  Standard standard;
  std::mt19937_64 random(7);
  for (unsigned long i = 0; i < numberOfTries(); ++i) {
    const auto digits = static_cast<double>(random() % 900000 + 100000);
    const double value = (digits + 0.5) * std::pow(10.0, static_cast<int>(random() % 40) - 20);
    ASSERT_EQ(classic(value), standard(value)) << std::hexfloat << value;
  }
}

TEST(ClassicStream, WritesIntegersAsAStreamDoes) {
  Standard standard;
  std::mt19937_64 random(3);
  for (int i = 0; i < 100000; ++i) {
    const unsigned long value = random() >> random() % 64;
    ASSERT_EQ(classic(value), standard(value));
    ASSERT_EQ(classic(static_cast<long>(value)), standard(static_cast<long>(value)));
  }
  EXPECT_EQ(classic(std::numeric_limits<long>::min()), "-9223372036854775808");
  EXPECT_EQ(classic(~0UL), "18446744073709551615");
}

TEST(ClassicStream, PadsTheNextInsertionAlone) {
  ClassicStream stream;
  stream.padNext(5);
  stream << "ab";
  stream << 7L;
  stream.padNext(3);
  stream << 1.5;
  stream.padNext(2);
  stream << "";
  stream << "|";
  EXPECT_EQ(stream.takeText(), "ab   71.5  |");
}

TEST(ClassicStream, PadsNothingUnasked) {
  ClassicStream stream;
  stream << "";
  EXPECT_EQ(stream.takeText(), "");
}

TEST(ClassicStream, NeverCutsWhatIsWiderThanItsPlace) {
  EXPECT_EQ(classic(std::string_view("abc"), 2), "abc");
  EXPECT_EQ(classic(std::string_view("abc"), 3), "abc");
  EXPECT_EQ(classic(-1234567L, 4), "-1234567");
}

TEST(ClassicStream, IsEmptyOnceItsTextIsTaken) {
  ClassicStream stream;
  stream << "first";
  EXPECT_EQ(stream.takeText(), "first");
  EXPECT_EQ(stream.takeText(), "");
  stream << "second";
  EXPECT_EQ(stream.takeText(), "second");
}

// Insertions of all lengths, so that the room runs out at every place.
TEST(ClassicStreamProperty, KeepsEveryInsertionInPlace) {
  EXPECT_TRUE(rc::check("classic = standard", [](const std::vector<std::string>& texts) {
    ClassicStream stream;
    std::ostringstream standard;
    for (const std::string& text : texts) {
      const auto width = *rc::gen::inRange(0, 40);
      stream.padNext(static_cast<std::size_t>(width));
      stream << text << static_cast<double>(text.size());
      standard << std::left << std::setw(width) << text << static_cast<double>(text.size());
    }
    RC_ASSERT(stream.takeText() == standard.str());
  }));
}

}  // namespace
}  // namespace object_model
