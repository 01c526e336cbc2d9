#include <object_model/ArrayInfo.h>
#include <object_model/Tuple.h>
#include <quillon/memory/Axes.h>

#include <algorithm>

namespace quillon::memory {

std::vector<AxisFacts> axesOf(const object_model::Array& array) {
  const object_model::ArrayInfo* info = array.getInformation()->asArrayInfo();
  const object_model::Tuple& shape = array.size();
  std::vector<AxisFacts> axes;
  for (unsigned long k = 0; k < shape.size(); ++k) {
    const object_model::AxisInfo* axis = info->getAxisInfo(k);
    axes.push_back({axis->getAxisName(), shape[k], axis->getAxisType()});
  }
  return axes;
}

long countOf(const std::string& name, const std::vector<AxisFacts>& axes) {
  return std::count_if(axes.begin(), axes.end(),
                       [&name](const AxisFacts& axis) { return axis.name == name; });
}

std::string repeatedAxis(const std::vector<AxisFacts>& axes) {
  const auto repeated = std::find_if(axes.begin(), axes.end(), [&axes](const AxisFacts& axis) {
    return countOf(axis.name, axes) > 1;
  });
  return repeated == axes.end() ? std::string() : repeated->name;
}

bool isCoordinate(const object_model::Array& array) {
  const std::vector<AxisFacts> axes = axesOf(array);
  return axes.size() == 1 && axes[0].name == array.getName();
}

std::vector<unsigned long> shapeOf(const object_model::Array& array) {
  const object_model::Tuple& size = array.size();
  std::vector<unsigned long> shape(size.size());
  for (std::size_t k = 0; k < shape.size(); ++k) {
    shape[k] = size[k];
  }
  return shape;
}

bool haveSameShape(const object_model::Array& first, const object_model::Array& second) {
  const object_model::Tuple& a = first.size();
  const object_model::Tuple& b = second.size();
  bool same = a.size() == b.size();
  for (unsigned long k = 0; same && k < a.size(); ++k) {
    same = a[k] == b[k];
  }
  return same;
}

}  // namespace quillon::memory
