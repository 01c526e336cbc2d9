#include <gtest/gtest.h>
#include <tabra/DataFrameView.h>
#include <tabra/MemoryDataFrame.h>

#include <string>
#include <vector>

#include "support/Destruction.h"

namespace tabra {
namespace {

TEST(DataFrameViewTest, SetUnitReachesTheTableOnce) {
  class Recording : public MemoryDataFrame {
   public:
    void setColumnUnit(unsigned long column, const std::string& unit) override {
      calls.push_back(std::to_string(column) + "=" + unit);
    }
    std::vector<std::string> calls;
  };
  Recording recording;
  DataFrameView& view = recording;
  view.setUnit(7, "mm");
  EXPECT_EQ(recording.calls, std::vector<std::string>{"7=mm"});
}

TEST(DataFrameViewTest, IsDestroyedThroughTheInterface) {
  EXPECT_TRUE((test::isDestroyedThrough<DataFrameView, MemoryDataFrame>()));
}

}  // namespace
}  // namespace tabra
