#include <gtest/gtest.h>
#include <tabra/VectorX.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace tabra {
namespace {

using Vector = VectorX<unsigned long>;
using Values = std::vector<unsigned long>;

Values valuesOf(const Vector& vector) {
  Values values;
  for (unsigned long k = 0; k < vector.size(); ++k) {
    values.push_back(vector[k]);
  }
  return values;
}

TEST(VectorXTest, ACountGivesThatManyZeros) { EXPECT_EQ(valuesOf(Vector(3)), (Values{0, 0, 0})); }

TEST(VectorXTest, ACountOfZeroIsEmpty) { EXPECT_EQ(Vector(0UL).size(), 0U); }

TEST(VectorXTest, AListGivesItsValuesInOrder) {
  EXPECT_EQ(valuesOf(Vector({4, 5, 6})), (Values{4, 5, 6}));
  EXPECT_EQ(Vector(std::initializer_list<unsigned long>()).size(), 0U);
}

TEST(VectorXTest, ElementsAreWrittenInPlace) {
  Vector vector(2);
  vector[1] = 9;
  EXPECT_EQ(valuesOf(vector), (Values{0, 9}));
}

TEST(VectorXTest, ACopySharesNothingWithItsSource) {
  const Vector source({1, 2});
  Vector copy(source);
  copy[0] = 10;
  EXPECT_EQ(valuesOf(source), (Values{1, 2}));
  EXPECT_EQ(valuesOf(copy), (Values{10, 2}));
}

TEST(VectorXTest, MovingTakesTheValuesAndLeavesNone) {
  Vector source({1, 2});
  const unsigned long* address = &source[0];
  const Vector moved(std::move(source));
  EXPECT_EQ(valuesOf(moved), (Values{1, 2}));
  EXPECT_EQ(&moved[0], address);
  EXPECT_EQ(source.size(), 0U);
  EXPECT_EQ(Vector(source).size(), 0U);
}

TEST(VectorXTest, IsNotMadeFromANumberByItself) {
  EXPECT_FALSE((std::is_convertible_v<unsigned long, Vector>));
}

}  // namespace
}  // namespace tabra
