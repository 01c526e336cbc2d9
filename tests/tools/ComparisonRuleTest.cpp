#include <gtest/gtest.h>
#include <object_model/TupleX.h>
#include <quillon/memory/TypedArray.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ComparisonRule.h"

namespace quillon::tools {
namespace {

using object_model::helper::ComparisonType;

const double INF = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

template <class Value>
bool areSameByLibrary(const ComparisonRule& rule, const Value& a, const Value& b) {
  const memory::TypedArray<Value> first("x", {}, {a});
  const memory::TypedArray<Value> second("x", {}, {b});
  return object_model::helper::areSameArrays(first, second, rule.type, rule.tolerance, nullptr);
}

/// Awkward values and random ones near to each other.
class Values {
 public:
  double real() {
    static const std::vector<double> AWKWARD = {0.0,  -0.0,  1e-9,  -1e-9, 1e-20,        2e-20,
                                                1.0,  -1.0,  INF,   -INF,  NOT_A_NUMBER, 1.1,
                                                -1.1, 1e300, -1e34, 5e-324};
    return pick(2) == 0
               ? AWKWARD[pick(AWKWARD.size())]
               : std::ldexp(static_cast<double>(pick(64)) - 32.0, static_cast<int>(pick(80)) - 60);
  }
  long integer() {
    static const std::vector<long> AWKWARD = {0,
                                              1,
                                              -1,
                                              std::numeric_limits<long>::max(),
                                              std::numeric_limits<long>::min(),
                                              std::numeric_limits<long>::max() - 1,
                                              1L << 53,
                                              (1L << 53) + 1};
    return pick(2) == 0 ? AWKWARD[pick(AWKWARD.size())] : static_cast<long>(pick(40)) - 20;
  }
  std::size_t pick(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_engine);
  }

 private:
  std::mt19937_64 m_engine{20240229};
};

TEST(ComparisonRuleTest, AgreesWithTheLibrary) {
  Values values;
  const std::vector<double> tolerances = {0.0, 0.1, 1.0, 1e-3, 1e-20, 2.0, INF, -1.0, NOT_A_NUMBER};
  for (int i = 0; i < 20000; ++i) {
    const ComparisonRule rule = {static_cast<ComparisonType>(values.pick(3)),
                                 tolerances[values.pick(tolerances.size())]};
    const double a = values.real();
    const double b = values.real();
    ASSERT_EQ(areSame(rule, a, b), areSameByLibrary(rule, a, b)) << a << " " << b;
    const std::complex<double> c(a, values.real());
    const std::complex<double> d(b, values.real());
    ASSERT_EQ(areSame(rule, c, d), areSameByLibrary(rule, c, d)) << c << " " << d;
    const long n = values.integer();
    const long m = values.integer();
    ASSERT_EQ(areSame(rule, n, m), areSameByLibrary(rule, n, m)) << n << " " << m;
    const auto u = static_cast<unsigned long>(n);
    const auto v = static_cast<unsigned long>(m);
    ASSERT_EQ(areSame(rule, u, v), areSameByLibrary(rule, u, v)) << u << " " << v;
    const std::string s = std::to_string(values.pick(3));
    const std::string t = std::to_string(values.pick(3));
    ASSERT_EQ(areSame(rule, s, t), areSameByLibrary(rule, s, t)) << s << " " << t;
    const bool p = n < 0;
    const bool q = m < 0;
    ASSERT_EQ(areSame(rule, p, q), areSameByLibrary(rule, p, q)) << p << " " << q;
  }
}

TEST(ComparisonRuleTest, DistanceOfIntegersIsExact) {
  constexpr long LEAST = std::numeric_limits<long>::min();
  constexpr long MOST = std::numeric_limits<long>::max();
  EXPECT_EQ(distanceOf(LEAST, MOST), std::numeric_limits<unsigned long>::max());
  EXPECT_EQ(distanceOf(MOST, LEAST), std::numeric_limits<unsigned long>::max());
  EXPECT_EQ(distanceOf(MOST, MOST - 1), 1);
  EXPECT_EQ(distanceOf(3UL, 5UL), 2);
}

struct LoopholeCase {
  const char* rule;
  ComparisonRule under;
  double a;
  double b;
  Loophole loophole;
};

void PrintTo(const LoopholeCase& c, std::ostream* stream) { *stream << c.rule; }

class LoopholeTest : public ::testing::TestWithParam<LoopholeCase> {};

TEST_P(LoopholeTest, IsKnown) {
  EXPECT_EQ(loopholeOf(GetParam().under, GetParam().a, GetParam().b), GetParam().loophole);
}

constexpr ComparisonRule RELATIVE = {ComparisonType::Relative, 0.1};

INSTANTIATE_TEST_SUITE_P(
    Pairs, LoopholeTest,
    ::testing::ValuesIn(std::vector<LoopholeCase>{
        {"OppositeSigns", RELATIVE, 1, -1, Loophole::NegativeReference},
        {"BothNegative", RELATIVE, -1, -2, Loophole::NegativeReference},
        {"NegativeAndInfinite", RELATIVE, INF, -1, Loophole::NegativeReference},
        {"NegativeWithinTolerance", RELATIVE, -1, -1.05, Loophole::None},
        {"PositiveReferenceFails", RELATIVE, -1, 1, Loophole::None},
        {"Tiny", RELATIVE, 1e-20, 2e-20, Loophole::SmallReference},
        {"TinyAndZero", RELATIVE, 1e-20, 0, Loophole::SmallReference},
        {"TinyWithinTolerance", RELATIVE, 1e-20, 1.01e-20, Loophole::None},
        {"NegativeFirstForTinySecond", RELATIVE, -1, 1e-20, Loophole::SmallReference},
        {"Equal", RELATIVE, -1, -1, Loophole::None},
        {"ZerosOfBothSigns", RELATIVE, 0, -0.0, Loophole::None},
        {"NaN", RELATIVE, NOT_A_NUMBER, NOT_A_NUMBER, Loophole::None},
        {"AbsoluteHasNone", {ComparisonType::Absolute, 0.1}, -1, -1.05, Loophole::None},
        {"ExactHasNone", {}, -1, -1.05, Loophole::None},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(ComparisonRuleTest, RoundedIntegersAreALoophole) {
  constexpr long LARGE = (1L << 53) + 1;
  EXPECT_EQ(loopholeOf({ComparisonType::Absolute, 0}, LARGE, LARGE - 1), Loophole::RoundedIntegers);
  EXPECT_EQ(loopholeOf({ComparisonType::Relative, 0}, LARGE, LARGE - 1), Loophole::RoundedIntegers);
  EXPECT_EQ(loopholeOf({ComparisonType::Absolute, 1}, LARGE, LARGE - 1), Loophole::None);
}

template <class Stored, class Value>
void expectPlainPairsToBeTheSame(const std::vector<Stored>& numbers) {
  for (const ComparisonRule& rule :
       {ComparisonRule{}, ComparisonRule{ComparisonType::Absolute, 0.25},
        ComparisonRule{ComparisonType::Relative, 0.25}}) {
    withPlainRule<Stored>(rule, [&](const auto& isPlain) {
      for (const Stored a : numbers) {
        for (const Stored b : numbers) {
          const Value x = a;
          const Value y = b;
          const bool isQuiet = (areSame(rule, x, y) && loopholeOf(rule, x, y) == Loophole::None) ||
                               (isNaN(x) && isNaN(y));
          EXPECT_TRUE(isQuiet || !isPlain(a, b)) << +a << " and " << +b;
        }
        EXPECT_TRUE(isPlain(a, a)) << +a;
      }
    });
  }
}

TEST(PlainRuleTest, SaysYesOnlyOfPairsThatThereIsNothingToSayAbout) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectPlainPairsToBeTheSame<double, double>({0, -0.0, 0.1, 0.2, 1, 1.25, 1.3, -1, -1.25, 1e-9,
                                               1e-10, 1.1e-9, 1e300, -1e300, infinity, -infinity,
                                               nan});
  expectPlainPairsToBeTheSame<float, double>(
      {0, 0.1F, 0.2F, 1, 1.2F, 1.25F, -1, 1e-9F, 1e38F, std::numeric_limits<float>::quiet_NaN()});
  expectPlainPairsToBeTheSame<signed char, long>({-128, -1, 0, 1, 100, 125, 127});
  expectPlainPairsToBeTheSame<unsigned long, unsigned long>({0, 1, 5, 6, ~0UL, ~0UL - 1});
}

}  // namespace
}  // namespace quillon::tools
