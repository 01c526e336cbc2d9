#include "ComparisonHelper/ArrayPair.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>

#include "ComparisonHelper/NameOf.h"
#include "ComparisonHelper/Report.h"

namespace object_model::helper {
namespace {

bool sameShape(const std::string& name, const Tuple& first, const Tuple& second,
               std::string* message) {
  const unsigned long dimensions = first.size();
  if (dimensions != second.size()) {
    return reportDifference(message, "The arrays '", name, "' have different dimensions: '",
                            dimensions, "' and '", second.size(), "'.");
  }
  for (unsigned long d = 0; d < dimensions; ++d) {
    if (first[d] != second[d]) {
      // The blank before the first colon is deliberate.
      return reportDifference(message, "The arrays '", name,
                              "' have different sizes for the dimension : '", d, "': '", first[d],
                              "' and '", second[d], "'.");
    }
  }
  return true;
}

}  // namespace

std::optional<ArrayPair> pairUp(const Array& first, const Array& second, std::string& name,
                                std::string* message) {
  name = nameOf(first);
  const std::string& secondName = nameOf(second);
  if (name != secondName) {
    reportDifference(message, "The arrays have different names: '", name, "' and '", secondName,
                     "'.");
    return std::nullopt;
  }
  const ElementType type = first.getElementType();
  const ElementType secondType = second.getElementType();
  if (type != secondType) {
    reportDifference(message, "The arrays '", name, "' have different element type: '", type,
                     "' and '", secondType, "'.");
    return std::nullopt;
  }
  const Tuple& shape = first.size();
  if (!sameShape(name, shape, second.size(), message)) {
    return std::nullopt;
  }
  return ArrayPair{first, second, name, type, shape};
}

}  // namespace object_model::helper
