// Prints what the reader makes of a file, as JSON: for each variable of each group its dimensions,
// the slowest first, its kind and its values; a missing one is null, a time is text.
#include <object_model/TupleX.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/JsonText.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/Values.h>
#include <quillon/netcdf/File.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace quillon;
using object_model::ElementType;

std::string numberText(double value) {
  return std::isnan(value)   ? "null"
         : std::isinf(value) ? (value < 0 ? "-1e999" : "1e999")
                             : memory::shortestText(value);
}

std::string textAt(const object_model::Array& array, const object_model::Tuple& index) {
  switch (array.getElementType()) {
    case ElementType::Int:
      return memory::shortestText(array.getValueAsInt(index));
    case ElementType::UInt:
      return memory::shortestText(array.getValueAsUInt(index));
    case ElementType::Boolean:
      return array.getValueAsBoolean(index) ? "true" : "false";
    case ElementType::Double:
      return numberText(array.getValueAsDouble(index));
    default:
      return memory::jsonText(array.getValueAsString(index));
  }
}

std::vector<std::string> timesOf(const memory::HasTimes& times, const memory::Block& all) {
  std::vector<long> points(all.count);
  times.readTimes(all.start.data(), all.extent.data(), points.data());
  std::vector<std::string> texts;
  for (const long time : points) {
    const std::string text =
        memory::timeText(time, times.calendar(), memory::TimeForm::DateAndTime);
    texts.push_back(text.empty() ? "null" : memory::jsonText(text));
  }
  return texts;
}

std::vector<std::string> valuesOf(const object_model::Array& array) {
  const memory::BlockLayout layout(array, ~0UL);
  if (layout.size() == 0) {
    return {};
  }
  if (const auto* times = dynamic_cast<const memory::HasTimes*>(&array)) {
    return timesOf(*times, layout.blockAt(0));
  }
  std::vector<std::string> texts;
  object_model::TupleX index(array.size().size());
  for (unsigned long k = 0; k < layout.size(); ++k) {
    unsigned long rest = k;
    for (unsigned long j = 0; j < index.size(); ++j) {
      index[j] = rest % array.size()[j];
      rest /= array.size()[j];
    }
    texts.push_back(textAt(array, index));
  }
  return texts;
}

std::string kindOf(const object_model::Array& array) {
  if (dynamic_cast<const memory::HasTimes*>(&array) != nullptr) {
    return "time";
  }
  const object_model::BulkValues* bulk = memory::bulkValuesOf(array);
  return bulk == nullptr ? "text" : memory::nameOf(bulk->storedType());
}

void print(const object_model::Array& array, bool& isFirst) {
  std::cout << (isFirst ? "" : ",\n") << memory::jsonText(memory::pathOf(array))
            << ": {\"kind\": " << memory::jsonText(kindOf(array)) << ", \"dims\": [";
  const std::vector<memory::AxisFacts> axes = memory::axesOf(array);
  for (auto axis = axes.rbegin(); axis != axes.rend(); ++axis) {
    std::cout << (axis == axes.rbegin() ? "" : ", ") << memory::jsonText(axis->name);
  }
  std::cout << "], \"values\": [";
  const std::vector<std::string> values = valuesOf(array);
  for (std::size_t k = 0; k < values.size(); ++k) {
    std::cout << (k == 0 ? "" : ", ") << values[k];
  }
  std::cout << "]}";
  isFirst = false;
}

void printAll(const object_model::Dictionary& group, bool& isFirst) {
  for (const auto& [name, entry] : memory::entriesOf(group)) {
    if (const object_model::Array* array = entry->asArray()) {
      print(*array, isFirst);
    } else {
      printAll(*entry->asDictionary(), isFirst);
    }
  }
}

}  // namespace

int main(int /*count*/, char** arguments) {
  const netcdf::File file(arguments[1]);
  bool isFirst = true;
  std::cout << "{";
  printAll(file.root(), isFirst);
  std::cout << "}\n";
  return 0;
}
