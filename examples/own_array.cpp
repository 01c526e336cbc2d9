/// @file
/// An array over a storage of your own: the pixels of a camera, 16 bits each, which its driver
/// owns. They are compared and exported in place, without a copy.
#include <object_model/Array.h>
#include <object_model/ComparisonHelper.h>
#include <object_model/IO.h>
#include <object_model/InvalidCall.h>
#include <object_model/TupleX.h>
#include <quillon/memory/TypedArray.h>
#include <tabra/MemoryDataFrame.h>

#include <array>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

using object_model::ElementType;
using object_model::Tuple;
using object_model::TupleX;
using namespace quillon::memory;

namespace {

/// A picture whose pixels stand row by row. All that must be written is here: `Array` answers the
/// type tests and casts, counts no versions and rejects the accessors that are not overridden.
/// (`quillon::memory::ArrayBase` has all of it but the accessor; derive from that to write less.)
class CameraImage final : public object_model::Array {
 public:
  CameraImage(std::string name, unsigned long width, unsigned long height,
              const std::uint16_t* pixels)
      : m_descriptor(std::move(name), ElementType::UInt, {Axis("x", width), Axis("y", height)}),
        m_shape({width, height}),
        m_pixels(pixels) {}

  // Name, element type and axes. Whoever needs a descriptor of another kind derives from ArrayInfo.
  const ArrayDescriptor* getInformation() const override { return &m_descriptor; }

  // The container calls setParent(); it is known, not owned.
  const object_model::Data* parent() const override { return m_parent; }
  object_model::Data* parent() override { return m_parent; }
  void setParent(object_model::Data* parent) override { m_parent = parent; }

  // The one accessor that suits ElementType::UInt, called once for every element. The position has
  // an index for each dimension; it is checked where callers are not trusted.
  unsigned long getValueAsUInt(const Tuple& index) const override {
    return m_pixels[index[1] * m_shape[0] + index[0]];
  }

  // The shape in the order of the axes, kept here, as a reference is returned.
  const Tuple& size() const override { return m_shape; }

  std::string getPhysicalUnit() const override { return "counts"; }
  std::string getUnit() const override { return "counts"; }

  // The writing interface is the toolkit's, which only passes it on; an array that is written in
  // another way, or not at all, has none.
  object_model::WritingInterface* getWritingInterface() override { return nullptr; }
  const object_model::WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  ArrayDescriptor m_descriptor;
  TupleX m_shape;
  const std::uint16_t* m_pixels;
  object_model::Data* m_parent = nullptr;
};

}  // namespace

int main() {
  std::array<std::uint16_t, 6> driver = {10, 20, 30, 40, 50, 60};
  Dictionary shot("shot");
  shot.add(std::make_unique<CameraImage>("pixels", 3, 2, driver.data()));

  const auto table = std::make_shared<tabra::MemoryDataFrame>();
  object_model::exportToDataFrame(shot, table.get(), {"x", "y"});
  std::cout << object_model::exportDataFrameToString(table, 0);

  const object_model::Array& image = *shot.data("pixels")->asArray();
  const UIntArray expected("pixels", {Axis("x", 3), Axis("y", 2)}, {10, 20, 30, 40, 50, 60});
  driver[4] = 55;  // the array shows what the driver has now
  std::string difference;
  areSameArrays(image, expected, object_model::helper::ComparisonType::Exact, 0, &difference);
  std::cout << difference << '\n';

  try {
    image.getValueAsDouble(TupleX({1, 1}));
  } catch (const object_model::InvalidCall& error) {  // no std::exception
    std::cout << error.what() << '\n';
  }
}
