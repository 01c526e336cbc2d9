#include <quillon/testing.h>
#include <tabra/MemoryDataFrame.h>

#include <memory>
#include <stdexcept>

namespace quillon::testing {
namespace {

struct InMemoryFrame {
  static std::unique_ptr<tabra::DataFrameView> make() {
    return std::make_unique<tabra::MemoryDataFrame>();
  }
};

/// It gives cells to no place, but for none.
struct StrictFrame {
  class Strict final : public tabra::MemoryDataFrame {
   public:
    void read(unsigned long column, unsigned long firstRow, unsigned long count,
              void* destination) const override {
      if (destination == nullptr && count > 0) {
        throw std::invalid_argument("no place");
      }
      MemoryDataFrame::read(column, firstRow, count, destination);
    }
  };
  static std::unique_ptr<tabra::DataFrameView> make() { return std::make_unique<Strict>(); }
};

using Frames = ::testing::Types<InMemoryFrame, StrictFrame>;
INSTANTIATE_TYPED_TEST_SUITE_P(Own, DataFrameSuite, Frames, );

}  // namespace
}  // namespace quillon::testing
