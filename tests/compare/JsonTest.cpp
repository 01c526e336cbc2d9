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

TEST(JsonTest, TheRuleSaysWhereMissingValuesDiffer) {
  Options options;
  options.nanEqual = false;
  const memory::DoubleArray a = row<double>("a", {1});
  EXPECT_EQ(toJson(compare(a, a, options), "a", "b"),
            R"({"first": "a", "second": "b", "same": true, "values": 1, )"
            R"("rule": {"absolute": 0, "relative": 0, "nan_equal": false}, )"
            R"("differences": [], "not_compared": []})");
}

TEST(JsonTest, EachReasonHasItsName) {
  RichArray a("v", {{"x", 1}}, {1});
  memory::IntArray b("v", {{"y", 2}}, {1, 2});
  a.setUnit("m");
  a.given = {{"source", std::string("s")}};
  Options options;
  options.attributes = true;
  Report report = compare(a, b, options);
  const Report lone = compare(Dictionary("a"), dictionary("b", dictionary("g")));
  report.rows.push_back(lone.rows.at(0));
  EXPECT_EQ(toJson(report, "f", "g"),
            R"j({"first": "f", "second": "g", "same": false, "values": 0, )j"
            R"j("rule": {"absolute": 0, "relative": 0, "nan_equal": true}, "differences": [)j"
            R"j({"path": "/", "reason": "dimensions", "first": "(x)", "second": "(y)"}, )j"
            R"j({"path": "/", "reason": "shape", "first": "(1)", "second": "(2)"}, )j"
            R"j({"path": "/", "reason": "element type", "first": "Double", "second": "Int"}, )j"
            R"j({"path": "/", "reason": "unit", "first": "m", "second": ""}, )j"
            R"j({"path": "/@source", "reason": "attribute", "first": "s", "second": null}, )j"
            R"j({"path": "/g", "reason": "only in the second", "first": null, )j"
            R"j("second": "dictionary"}], "not_compared": []})j");
}

}  // namespace
}  // namespace quillon::compare
