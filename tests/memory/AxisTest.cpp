#include <gtest/gtest.h>
#include <quillon/memory/Axis.h>

#include <ostream>

namespace quillon::memory {
namespace {

using object_model::AxisType;

struct KindCase {
  const char* rule;
  int kind;
  const char* name;
};
void PrintTo(const KindCase& row, std::ostream* out) { *out << row.rule; }

class AxisKindTest : public ::testing::TestWithParam<KindCase> {};

TEST_P(AxisKindTest, NamesTheAxis) {
  const Axis axis(static_cast<AxisType>(GetParam().kind), 5);
  EXPECT_EQ(static_cast<int>(axis.getAxisType()), GetParam().kind);
  EXPECT_EQ(axis.getAxisName(), GetParam().name);
  EXPECT_EQ(axis.size(), 5U);
}

INSTANTIATE_TEST_SUITE_P(Kinds, AxisKindTest,
                         ::testing::Values(KindCase{"Slice", 0, "slice"},
                                           KindCase{"Time", 1, "time"},
                                           KindCase{"Channel", 2, "channel"},
                                           KindCase{"Label", 3, "label"},
                                           KindCase{"AnyOtherHasNoName", 4, ""},
                                           KindCase{"ANegativeOneHasNoName", -1, ""}),
                         [](const auto& row) { return row.param.rule; });

TEST(AxisTest, ANameOfItsOwnComesWithNoneOfTheFourKinds) {
  const Axis axis("COADSX", 180);
  EXPECT_EQ(axis.getAxisName(), "COADSX");
  EXPECT_EQ(axis.getAxisType(), OTHER_AXIS);
  EXPECT_EQ(static_cast<int>(OTHER_AXIS), 4);
  EXPECT_EQ(axis.size(), 180U);
}

TEST(AxisTest, ANameOfItsOwnMayHaveAKind) {
  const Axis axis("TIME", 12, AxisType::Time);
  const object_model::AxisInfo& info = axis;
  EXPECT_EQ(info.getAxisName(), "TIME");
  EXPECT_EQ(info.getAxisType(), AxisType::Time);
}

TEST(AxisTest, MayBeEmptyAndNameless) {
  const Axis axis("", 0);
  EXPECT_EQ(axis.getAxisName(), "");
  EXPECT_EQ(axis.size(), 0U);
}

}  // namespace
}  // namespace quillon::memory
