#include <gtest/gtest.h>
#include <object_model/ComparisonHelper.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "support/LyingInput.h"
#include "support/Properties.h"

namespace object_model::helper {
namespace {

ComparisonType anyMode() { return static_cast<ComparisonType>(::test::pick(4)); }

RC_GTEST_PROP(ChangingInput, LeadsNoComparisonOfArraysAstray, ()) {
  ::test::LyingInput input;
  const ComparisonType mode = anyMode();
  std::string message;
  input.endures([&] { areSameArrays(input.firstArray, input.secondArray, mode, 0.5, &message); });
}

RC_GTEST_PROP(ChangingInput, LeadsNoComparisonOfDictionariesAstray, ()) {
  ::test::LyingInput input;
  const ComparisonType mode = anyMode();
  std::string message;
  input.endures([&] { areSameDictionaries(input.first, input.second, mode, 0.5, &message); });
}

RC_GTEST_PROP(ChangingInput, LeadsNoComparisonOfOutlinesAstray, ()) {
  ::test::LyingInput input;
  std::string message;
  input.endures([&] { areSimilarDictionaries(input.first, input.second, &message); });
}

}  // namespace
}  // namespace object_model::helper
