#include <gtest/gtest.h>
#include <object_model/Request.h>

#include <memory>

#include "support/Interfaces.h"

namespace object_model {
namespace {

TEST(RequestTest, IsDestroyedThroughTheBase) {
  class Watched : public test::PlainRequest {
   public:
    explicit Watched(bool& destroyed) : m_destroyed(destroyed) {}
    ~Watched() override { m_destroyed = true; }

   private:
    bool& m_destroyed;
  };
  bool destroyed = false;
  std::unique_ptr<Request>(std::make_unique<Watched>(destroyed)).reset();
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace object_model
