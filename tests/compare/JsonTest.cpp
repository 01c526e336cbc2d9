#include <gmock/gmock.h>

#include "Support.h"

namespace quillon::compare {
namespace {

using memory::Dictionary;

TEST(JsonTest, SameObjectsHaveEmptyLists) {
  const memory::DoubleArray a = row<double>("a", {1, 2});
  EXPECT_EQ(toJson(compare(a, a, within(0.5, 0.25)), "a.nc", "b\"\xFF.nc"),
            R"({"first": "a.nc", "second": "b\"\ufffd.nc", "same": true, "values": 2, )"
            R"("rule": {"absolute": 0.5, "relative": 0.25, "nan_equal": true}, )"
            R"("differences": [], "not_compared": []})");
}

TEST(JsonTest, DifferencesHaveTheirFigures) {
  RichArray a("a", {{"y", 2}, {"x", 1}}, {1, 0});
  const RichArray b("a", {{"y", 2}, {"x", 1}}, {1, NOT_A_NUMBER});
  a.located = {std::make_shared<memory::DoubleArray>(row<double>("y", {10, 20}))};
  const RichArray c("a", {{"y", 2}, {"x", 1}}, {2, 0});
  const RichArray d("a", {{"y", 2}, {"x", 1}}, {1, 0});
  const std::string start =
      R"({"first": "", "second": "", "same": false, "values": 2, )"
      R"("rule": {"absolute": 0, "relative": 0, "nan_equal": true}, "differences": [)";
  EXPECT_EQ(
      toJson(compare(a, b), "", ""),
      start +
          R"({"path": "/", "reason": "values", "size": 2, "count": 1, "missing": 1, "largest": )"
          R"([{"at": {"x": 0, "y": 1}, "coordinates": {"y": 20}, "first": 0, "second": "NaN", )"
          R"("delta": "NaN"}], "largest_relative": "NaN", "mean": "NaN"}], "not_compared": []})");
  EXPECT_EQ(
      toJson(compare(c, d), "", ""),
      start +
          R"({"path": "/", "reason": "values", "size": 2, "count": 1, "missing": 0, "largest": )"
          R"([{"at": {"x": 0, "y": 0}, "coordinates": {}, "first": 2, "second": 1, "delta": 1}], )"
          R"("largest_relative": 1, "mean": 1}], "not_compared": []})");
}

TEST(JsonTest, OtherReasonsHaveBothSides) {
  Dictionary a = dictionary("a", row<double>("x", {1}), row<double>("lone", {1}));
  a.add(std::make_unique<FailingArray<std::runtime_error>>("bad", std::runtime_error("no")));
  Dictionary b = dictionary("b", dictionary("x"));
  b.add(std::make_unique<FailingArray<std::runtime_error>>("bad", std::runtime_error("no")));
  EXPECT_EQ(
      toJson(compare(a, b), "f", "g"),
      R"({"first": "f", "second": "g", "same": false, "values": 0, )"
      R"("rule": {"absolute": 0, "relative": 0, "nan_equal": true}, "differences": [)"
      R"({"path": "/x", "reason": "kind", "first": "array", "second": "dictionary"}, )"
      R"({"path": "/lone", "reason": "only in the first", "first": "array", "second": null}], )"
      R"("not_compared": [{"path": "/bad", "reason": "no"}]})");
}

}  // namespace
}  // namespace quillon::compare
