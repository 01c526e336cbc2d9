#include <gtest/gtest.h>

#include "Candidates.h"

namespace quillon::tables {
namespace {

using object_model::AxisType;

TEST(CandidatesTest, AnAxisThatNoArrayHasIsOfSize0) {
  const Candidates candidates = {
      {nullptr, "A", {{"x", 3, AxisType::Label}, {"y", 2, AxisType::Label}}}};
  EXPECT_EQ(commonSize("y", candidates), 2U);
  EXPECT_EQ(commonSize("z", candidates), 0U);
}

}  // namespace
}  // namespace quillon::tables
