#include <object_model/Array.h>
#include <object_model/ComparisonHelper.h>
#include <object_model/Dictionary.h>

#include "ComparisonHelper/ArrayPair.h"
#include "ComparisonHelper/Criterion.h"
#include "ComparisonHelper/ElementComparison.h"
#include "ComparisonHelper/NameOf.h"
#include "ComparisonHelper/NestedComparison.h"
#include "ComparisonHelper/Report.h"
#include "InvalidCallAt.h"

namespace object_model::helper {
namespace {

// Null for an entry that is absent. What a lookup throws for one is the dictionary's choice.
const Data* find(const Dictionary& dictionary, const std::string& name) {
  try {
    return dictionary.data(name);
  } catch (...) {
    return nullptr;
  }
}

const char* kindText(bool isDictionary) { return isDictionary ? "a dictionary" : "an array"; }

}  // namespace

// Here because the messages name this file.
void throwInvalidComparison(int line) {
  throwInvalidCallAt("ObjectModel/src/ComparisonHelper.cpp", line);
}

bool areSameArrays(const Array& first, const Array& second, ComparisonType type, double tolerance,
                   std::string* message) {
  const Criterion criterion = {type, tolerance};
  std::string name;
  const auto pair = pairUp(first, second, name, message);
  if (!pair) {
    return false;
  }
  if (pair->elementType == ElementType::Dictionary) {
    return areSameNested(*pair, criterion, message);
  }
  return areSameElements(*pair, criterion, message);
}

bool areSameDictionaries(const Dictionary& first, const Dictionary& second, ComparisonType type,
                         double tolerance, std::string* message) {
  return areSameNested(first, second, {type, tolerance}, message);
}

bool areSimilarDictionaries(const Dictionary& first, const Dictionary& second,
                            std::string* message) {
  const std::string firstName = first.getName();
  const std::string secondName = second.getName();
  if (firstName != secondName) {
    return reportDifference(message, "The dictionaries have different names: '", firstName,
                            "' and '", secondName, "'.");
  }
  const unsigned long count = first.getNumOfData();
  const unsigned long secondCount = second.getNumOfData();
  if (count != secondCount) {
    return reportDifference(message, "The dictionaries '", firstName, "' have different sizes: '",
                            count, "' and '", secondCount, "'.");
  }
  std::string entryName;  // outside of the loop, so that its memory serves all entries
  for (int i = 0; i < static_cast<int>(count); ++i) {
    const Data& entry = entryAt(first, i);
    entryName = nameOf(entry);
    const Data* match = find(second, entryName);
    if (match == nullptr) {
      // The two blanks are deliberate.
      return reportDifference(message, "The dictionary '", secondName, "'  doesn't have a '",
                              entryName, "' entry.");
    }
    const bool isDictionary = entry.isDictionary();
    const bool isMatchDictionary = match->isDictionary();
    if (isDictionary != isMatchDictionary) {
      // Deliberately the names of the containing dictionaries, not of the entry.
      return reportDifference(message, "The dictionaries don't have the same type: '", firstName,
                              "' is ", kindText(isDictionary), " and '", secondName, "' is ",
                              kindText(isMatchDictionary), ".");
    }
  }
  return true;
}

}  // namespace object_model::helper
