#include <gtest/gtest.h>
#include <object_model/Request.h>

#include "support/Destruction.h"
#include "support/Interfaces.h"

namespace object_model {
namespace {

TEST(RequestTest, IsDestroyedThroughTheBase) {
  EXPECT_TRUE((test::isDestroyedThrough<Request, test::PlainRequest>()));
}

}  // namespace
}  // namespace object_model
