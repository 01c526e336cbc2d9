#include <object_model/TupleX.h>
#include <quillon/memory/TypedArray.h>

#include <iostream>

int main() {
  using namespace quillon::memory;
  Dictionary nuclei("nuclei");
  nuclei.add(DoubleArray("area", {Axis("label", 3)}, {1.5, 2.5, 3.5}));
  const auto* area = nuclei.data("area")->asArray();
  std::cout << nuclei.getNumOfData() << " entry " << nuclei.getDataName(0) << ", value 1 is "
            << area->getValueAsDouble(object_model::TupleX({1})) << '\n';
}
