#include <gtest/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include "abi/DestructorAt.h"
#include "support/RecordingDataFrame.h"

namespace tabra {
namespace {

TEST(TableDestructorPlaceTest, IsFirstInTables) {
  binary::expectDestructorAt<test::RecordingDataFrame>(0);
  binary::expectDestructorAt<MemoryDataFrame>(0);
}

}  // namespace
}  // namespace tabra
