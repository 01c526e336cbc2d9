/// @file
/// The suite for dictionary classes.
#pragma once

#include <gtest/gtest.h>
#include <object_model/Dictionary.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/InvalidCall.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/testing/Blocks.h>

#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace quillon::testing {

/// Whether a subject says which names its dictionary has.
template <class Subject, class = void>
struct HasNames : std::false_type {};
template <class Subject>
struct HasNames<Subject, std::void_t<decltype(Subject::names())>> : std::true_type {};

/// Whether a subject's dictionary shows entries that belong to another one.
template <class Subject, class = void>
struct BorrowsEntries : std::false_type {};
template <class Subject>
struct BorrowsEntries<Subject, std::void_t<decltype(Subject::BORROWS_ENTRIES)>>
    : std::bool_constant<Subject::BORROWS_ENTRIES> {};

/// Checks a dictionary class against what the library expects of it:
/// `INSTANTIATE_TYPED_TEST_SUITE_P(Files, DictionarySuite, FileSubject);`, after
/// `using namespace quillon::testing;`.
///
/// A subject is a class with a function `make()` that returns a `std::unique_ptr` or a
/// `std::shared_ptr` to a new dictionary. It may have a function `names()`, too, that returns a
/// vector of the entries' names in their order, and a constant `BORROWS_ENTRIES`, true for a
/// dictionary that shows the entries of another one, which stays their parent, and that stands in
/// no container itself.
template <class Subject>
class DictionarySuite : public ::testing::Test {
 protected:
  /// Fails where there is nothing to check.
  void SetUp() override {
    ASSERT_NE(m_dictionary, nullptr) << "make() gives no dictionary";
    ASSERT_NE(m_dictionary->getInformation(), nullptr) << "The dictionary has no descriptor";
  }

  /// The dictionary of the subject, for writing.
  object_model::Dictionary& writable() { return *m_dictionary; }

  /// The dictionary of the subject.
  const object_model::Dictionary& dictionary() const { return *m_dictionary; }

  /// How many entries it has.
  int count() const { return static_cast<int>(m_dictionary->getNumOfData()); }

  /// The names of the entries in their order.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (int k = 0; k < count(); ++k) {
      names.push_back(m_dictionary->getDataName(k));
    }
    return names;
  }

 private:
  const decltype(Subject::make()) m_dictionary = Subject::make();
};

// The tests, whose names say what they check.
/// @cond

TYPED_TEST_SUITE_P(DictionarySuite);

TYPED_TEST_P(DictionarySuite, IsADictionaryAndNoArray) {
  object_model::Data& data = this->writable();
  const object_model::Data& readOnly = data;
  EXPECT_TRUE(data.isDictionary());
  EXPECT_FALSE(data.isArray());
  EXPECT_EQ(data.asDictionary(), &data);
  EXPECT_EQ(readOnly.asDictionary(), &data);
  EXPECT_EQ(data.asArray(), nullptr);
  EXPECT_EQ(readOnly.asArray(), nullptr);
  EXPECT_EQ(data.asDynamicDictionary() != nullptr, data.isDynamicDictionary());
  EXPECT_EQ(readOnly.asDynamicDictionary() != nullptr, data.isDynamicDictionary());
}

TYPED_TEST_P(DictionarySuite, DescriptorIsThatOfADictionary) {
  const object_model::DataInfo* info = this->dictionary().getInformation();
  EXPECT_TRUE(info->isDictionaryInfo());
  EXPECT_FALSE(info->isArrayInfo());
  EXPECT_NE(info->asDictionaryInfo(), nullptr);
  EXPECT_THROW(info->asArrayInfo(), object_model::InvalidCall);
  EXPECT_EQ(info->getName(), this->dictionary().getName());
}

TYPED_TEST_P(DictionarySuite, EntriesStandInTheExpectedOrder) {
  if constexpr (HasNames<TypeParam>::value) {
    EXPECT_EQ(this->names(), TypeParam::names());
  }
  EXPECT_EQ(this->names(), this->names());
}

TYPED_TEST_P(DictionarySuite, NamesAreUnique) {
  const std::vector<std::string> names = this->names();
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TYPED_TEST_P(DictionarySuite, EachEntryIsFoundUnderItsName) {
  for (int k = 0; k < this->count(); ++k) {
    const std::string name = this->dictionary().getDataName(k);
    const object_model::Data* entry = this->dictionary().data(name);
    ASSERT_NE(entry, nullptr) << name;
    EXPECT_EQ(entry->getName(), name);
    EXPECT_EQ(this->writable().data(name), entry) << name;
    EXPECT_EQ(this->dictionary().data(k), entry) << name;
    EXPECT_EQ(this->writable().data(k), entry) << name;
  }
}

TYPED_TEST_P(DictionarySuite, MissingNamesThrow) {
  std::string missing = "missing";
  for (const std::string& name : this->names()) {
    missing += name;  // longer than each of them
  }
  EXPECT_ANY_THROW(this->writable().data(missing));
  EXPECT_ANY_THROW(this->dictionary().data(missing));
}

TYPED_TEST_P(DictionarySuite, EntriesKnowTheirParent) {
  for (const std::string& name : this->names()) {
    object_model::Data* entry = this->writable().data(name);
    ASSERT_NE(entry, nullptr) << name;
    const object_model::Data* readOnly = entry;
    EXPECT_EQ(readOnly->parent(), entry->parent()) << name;
    // never true, never false: decided when compiled
    if (BorrowsEntries<TypeParam>::value) {
      EXPECT_NE(entry->parent(), nullptr) << name;
    } else {
      EXPECT_EQ(entry->parent(), &this->dictionary()) << name;
    }
  }
}

TYPED_TEST_P(DictionarySuite, ParentIsWhatItIsTold) {
  // never true, never false: decided when compiled
  if (BorrowsEntries<TypeParam>::value) {
    return;
  }
  memory::Dictionary container("container");
  this->writable().setParent(&container);
  EXPECT_EQ(this->writable().parent(), &container);
  EXPECT_EQ(this->dictionary().parent(), &container);
  this->writable().setParent(nullptr);
  EXPECT_EQ(this->dictionary().parent(), nullptr);
}

TYPED_TEST_P(DictionarySuite, AttributesHaveNamesOfTheirOwn) {
  expectUniqueAttributes(this->dictionary());
}

REGISTER_TYPED_TEST_SUITE_P(DictionarySuite, IsADictionaryAndNoArray, DescriptorIsThatOfADictionary,
                            EntriesStandInTheExpectedOrder, NamesAreUnique,
                            EachEntryIsFoundUnderItsName, MissingNamesThrow, EntriesKnowTheirParent,
                            ParentIsWhatItIsTold, AttributesHaveNamesOfTheirOwn);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DictionarySuite);

/// @endcond

}  // namespace quillon::testing
