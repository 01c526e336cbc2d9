#include <quillon/compare/Text.h>
#include <quillon/memory/JsonText.h>

namespace quillon::compare {
namespace {

using memory::Json;
using memory::jsonNumber;
using memory::jsonText;

std::string truth(bool value) { return value ? "true" : "false"; }

template <class Row, class Write>
std::string listOf(const std::vector<Row>& rows, const Write& write) {
  Json list('[');
  for (const Row& row : rows) {
    list.add(write(row));
  }
  return list.text();
}

std::string pairInJson(const PlacedPair& pair) {
  Json at('{');
  Json coordinates('{');
  for (const Place& place : pair.at) {
    at.add(place.dimension, std::to_string(place.index));
    if (!std::holds_alternative<std::monostate>(place.coordinate)) {
      coordinates.add(place.dimension, jsonOf(place.coordinate));
    }
  }
  return Json('{')
      .add("at", at.text())
      .add("coordinates", coordinates.text())
      .add("first", jsonOf(pair.first))
      .add("second", jsonOf(pair.second))
      .add("delta", jsonNumber(pair.delta))
      .text();
}

std::string differenceInJson(const Difference& row) {
  Json json('{');
  json.add("path", jsonText(row.path)).add("reason", jsonText(textOf(row.reason)));
  if (row.reason != Reason::Values) {
    return json.add("first", jsonOf(row.first)).add("second", jsonOf(row.second)).text();
  }
  return json.add("size", std::to_string(row.size))
      .add("count", std::to_string(row.count))
      .add("missing", std::to_string(row.missing))
      .add("largest", listOf(row.largest, pairInJson))
      .add("largest_relative", jsonNumber(row.largestRelative))
      .add("mean", jsonNumber(row.mean))
      .text();
}

std::string notComparedInJson(const NotCompared& entry) {
  return Json('{').add("path", jsonText(entry.path)).add("reason", jsonText(entry.reason)).text();
}

std::string ruleInJson(const Report& report) {
  return Json('{')
      .add("absolute", jsonNumber(report.tolerance.absolute))
      .add("relative", jsonNumber(report.tolerance.relative))
      .add("nan_equal", truth(report.nanEqual))
      .text();
}

}  // namespace

std::string toJson(const Report& report, const std::string& first, const std::string& second) {
  return Json('{')
      .add("first", jsonText(first))
      .add("second", jsonText(second))
      .add("same", truth(report.same))
      .add("values", std::to_string(report.values))
      .add("rule", ruleInJson(report))
      .add("differences", listOf(report.rows, differenceInJson))
      .add("not_compared", listOf(report.notCompared, notComparedInJson))
      .text();
}

}  // namespace quillon::compare
