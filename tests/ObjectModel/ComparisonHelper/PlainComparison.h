#pragma once

#include <object_model/ComparisonHelper.h>

#include <string>

/// The comparison functions once more, slow and obvious: every rule spelled out where it applies,
/// every sentence built at once, one call inside the other. What the library does must be the same
/// to the last call on the objects that are compared.
namespace quillon::test::plain {

bool areSameArrays(const object_model::Array& first, const object_model::Array& second,
                   object_model::helper::ComparisonType type, double tolerance,
                   std::string* message);

bool areSameDictionaries(const object_model::Dictionary& first,
                         const object_model::Dictionary& second,
                         object_model::helper::ComparisonType type, double tolerance,
                         std::string* message);

bool areSimilarDictionaries(const object_model::Dictionary& first,
                            const object_model::Dictionary& second, std::string* message);

}  // namespace quillon::test::plain
