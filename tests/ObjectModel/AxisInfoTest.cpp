#include <gtest/gtest.h>
#include <object_model/AxisInfo.h>

#include <ostream>
#include <string>

#include "support/Interfaces.h"

namespace object_model {
namespace {

struct AxisCase {
  const char* rule;
  int type;
  const char* name;
};
void PrintTo(const AxisCase& row, std::ostream* out) { *out << row.rule; }

class AxisNameTest : public ::testing::TestWithParam<AxisCase> {};

TEST_P(AxisNameTest, FollowsTheKind) {
  const test::PlainAxisInfo axis(static_cast<AxisType>(GetParam().type));
  EXPECT_EQ(axis.getAxisName(), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AxisNameTest,
    ::testing::Values(AxisCase{"Slice", 0, "slice"}, AxisCase{"Time", 1, "time"},
                      AxisCase{"Channel", 2, "channel"}, AxisCase{"Label", 3, "label"},
                      AxisCase{"PastTheLastHasNone", 4, ""}, AxisCase{"MinusOneHasNone", -1, ""}),
    [](const auto& row) { return row.param.rule; });

TEST(AxisInfoTest, AConcreteClassMayNameItsAxesOtherwise) {
  class Named : public test::PlainAxisInfo {
   public:
    std::string getAxisName() const override { return "longitude"; }
  };
  const Named named;
  EXPECT_EQ(static_cast<const AxisInfo&>(named).getAxisName(), "longitude");
}

}  // namespace
}  // namespace object_model
