#include <gtest/gtest.h>
#include <tabra/VectorX.h>

#include <limits>
#include <new>

namespace tabra {
namespace {

TEST(VectorXAllocationTest, AnAbsurdCountIsOutOfMemory) {
  constexpr unsigned long MOST = std::numeric_limits<unsigned long>::max();
  EXPECT_THROW(const VectorX<unsigned long> vector(MOST), std::bad_alloc);
  EXPECT_THROW(const VectorX<unsigned long> vector(MOST / 16), std::bad_alloc);
}

}  // namespace
}  // namespace tabra
