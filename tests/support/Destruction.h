#pragma once

#include <memory>

namespace test {

/// Whether deleting a `Concrete` through a pointer to its `Base` reaches the derived destructor.
template <class Base, class Concrete>
bool isDestroyedThrough() {
  class Watched : public Concrete {
   public:
    explicit Watched(bool& destroyed) : m_destroyed(destroyed) {}
    ~Watched() override { m_destroyed = true; }

   private:
    bool& m_destroyed;
  };
  bool destroyed = false;
  std::unique_ptr<Base>(std::make_unique<Watched>(destroyed)).reset();
  return destroyed;
}

}  // namespace test
