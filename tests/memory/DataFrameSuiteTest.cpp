#include <quillon/testing.h>
#include <tabra/MemoryDataFrame.h>

namespace quillon::testing {
namespace {

struct InMemory {
  static std::unique_ptr<tabra::DataFrameView> make() {
    return std::make_unique<tabra::MemoryDataFrame>();
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, DataFrameSuite, InMemory, );

}  // namespace
}  // namespace quillon::testing
