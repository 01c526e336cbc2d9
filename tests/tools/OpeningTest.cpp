#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/TypedArray.h>

#include "Opening.h"

namespace quillon::tools {
namespace {

using memory::Dictionary;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

auto isPassedOver(const char* name, const char* reason) {
  return AllOf(Field("name", &PassedOver::name, name),
               Field("reason", &PassedOver::reason, reason));
}

class OpeningTest : public ::testing::Test {
 protected:
  Dictionary m_root{"/"};
  Dictionary& m_climate = m_root.add(Dictionary("climate"));
  Dictionary& m_cells = m_root.add(Dictionary("cells"));
  Dictionary& m_otsu = m_cells.add(Dictionary("otsu"));
};

TEST_F(OpeningTest, SkippedVariablesBelongToTheirOwnGroupAlone) {
  const std::vector<netcdf::Skipped> skipped = {{"/p", "1"},
                                                {"/cells/p", "2"},
                                                {"/cells/otsu/p", "3"},
                                                {"/cells/otsu/q", "4"},
                                                {"/cells2/p", "5"}};
  EXPECT_THAT(skippedIn(m_root, skipped), ElementsAre(isPassedOver("p", "1")));
  EXPECT_THAT(skippedIn(m_cells, skipped), ElementsAre(isPassedOver("p", "2")));
  EXPECT_THAT(skippedIn(m_otsu, skipped),
              ElementsAre(isPassedOver("p", "3"), isPassedOver("q", "4")));
  EXPECT_THAT(skippedIn(m_climate, skipped), IsEmpty());
}

}  // namespace
}  // namespace quillon::tools
