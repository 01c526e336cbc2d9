#include <gtest/gtest.h>
#include <tabra/DataFrameView.h>
#include <tabra/MemoryDataFrame.h>

#include <memory>
#include <string>
#include <vector>

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
  class Watched : public MemoryDataFrame {
   public:
    explicit Watched(bool& destroyed) : m_destroyed(destroyed) {}
    ~Watched() override { m_destroyed = true; }

   private:
    bool& m_destroyed;
  };
  bool destroyed = false;
  std::unique_ptr<DataFrameView>(std::make_unique<Watched>(destroyed)).reset();
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace tabra
