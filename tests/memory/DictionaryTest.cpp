#include <gmock/gmock.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/FaultInjection.h"
#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using object_model::Data;
using test::thrownBy;

DoubleArray scalar(const std::string& name) { return DoubleArray(name, {}, {0}); }

/// A dictionary with the entries a, b and c.
Dictionary abc() {
  Dictionary dictionary("d");
  for (const char* name : {"a", "b", "c"}) {
    dictionary.add(scalar(name));
  }
  return dictionary;
}

std::vector<std::string> namesOf(const Dictionary& dictionary) {
  std::vector<std::string> names;
  for (int k = 0; k < static_cast<int>(dictionary.getNumOfData()); ++k) {
    names.push_back(dictionary.getDataName(k));
  }
  return names;
}

/// Every entry is found under its name, at its position, and has the dictionary as its parent.
void expectConsistent(Dictionary& dictionary, const std::vector<std::string>& names) {
  EXPECT_EQ(namesOf(dictionary), names);
  for (int k = 0; k < static_cast<int>(names.size()); ++k) {
    const std::string& name = names[static_cast<std::size_t>(k)];
    Data* entry = dictionary.data(name);
    EXPECT_EQ(entry->getName(), name);
    EXPECT_EQ(entry->parent(), &dictionary);
    EXPECT_EQ(dictionary.data(k), entry);
    EXPECT_EQ(std::as_const(dictionary).data(name), entry);
    EXPECT_EQ(std::as_const(dictionary).data(k), entry);
    EXPECT_TRUE(dictionary.contains(name));
  }
}

TEST(DictionaryTest, IsEmptyAtFirst) {
  const Dictionary dictionary("climate", "monthly means");
  EXPECT_EQ(dictionary.getName(), "climate");
  EXPECT_EQ(dictionary.getDescription(), "monthly means");
  EXPECT_EQ(dictionary.getNumOfData(), 0U);
  EXPECT_EQ(dictionary.parent(), nullptr);
  EXPECT_FALSE(dictionary.contains(""));
}

TEST(DictionaryTest, IsADictionaryThatIsNotDynamic) {
  Dictionary dictionary("d");
  const Data& data = dictionary;
  EXPECT_TRUE(data.isDictionary());
  EXPECT_EQ(data.asDictionary(), &dictionary);
  EXPECT_FALSE(data.isDynamicDictionary());
  EXPECT_EQ(data.asDynamicDictionary(), nullptr);
  EXPECT_EQ(dictionary.asDynamicDictionary(), nullptr);
}

TEST(DictionaryTest, KeepsEntriesInTheOrderInWhichTheyCame) {
  Dictionary dictionary("d");
  dictionary.add(scalar("z"));
  dictionary.add(Dictionary("a"));
  dictionary.add(scalar("m"));
  expectConsistent(dictionary, {"z", "a", "m"});
}

TEST(DictionaryTest, AddingGivesTheEntryInItsPlace) {
  Dictionary dictionary("d");
  DoubleArray& added = dictionary.add(scalar("a"));
  EXPECT_EQ(dictionary.data("a"), &added);
  std::unique_ptr<Data> entry = std::make_unique<Dictionary>("b");
  Data* address = entry.get();
  EXPECT_EQ(&dictionary.add(std::move(entry)), address);
  EXPECT_EQ(dictionary.data("b"), address);
  auto array = std::make_unique<DoubleArray>(scalar("c"));
  const DoubleArray* arrayAddress = array.get();
  DoubleArray& arrayAdded = dictionary.add(std::move(array));
  EXPECT_EQ(&arrayAdded, arrayAddress);
  expectConsistent(dictionary, {"a", "b", "c"});
}

TEST(DictionaryTest, ReferencesToEntriesOutliveFurtherAddingAndMoving) {
  Dictionary dictionary("d");
  const DoubleArray& first = dictionary.add(scalar("first"));
  for (int k = 0; k < 100; ++k) {
    dictionary.add(scalar(std::to_string(k)));
  }
  const Dictionary moved(std::move(dictionary));
  EXPECT_EQ(moved.data("first"), &first);
  EXPECT_EQ(first.parent(), &moved);
}

TEST(DictionaryTest, AnEmptyNameIsANameToo) {
  Dictionary dictionary("");
  dictionary.add(scalar(""));
  expectConsistent(dictionary, {""});
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { dictionary.add(scalar("")); }),
            "Dictionary '' already has an entry ''");
}

// Errors

TEST(DictionaryTest, ANameThatIsTakenIsRefusedAndNothingIsChanged) {
  Dictionary dictionary("d");
  const DoubleArray& first = dictionary.add(scalar("a"));
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { dictionary.add(Dictionary("a")); }),
            "Dictionary 'd' already has an entry 'a'");
  expectConsistent(dictionary, {"a"});
  EXPECT_EQ(dictionary.data("a"), &first);
}

TEST(DictionaryTest, ARefusedEntryIsLeftAsItWas) {
  Dictionary dictionary("d");
  dictionary.add(scalar("a"));
  std::unique_ptr<Data> entry = std::make_unique<DoubleArray>(scalar("a"));
  EXPECT_THROW(dictionary.add(std::move(entry)), std::invalid_argument);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->parent(), nullptr);
  auto array = std::make_unique<DoubleArray>(scalar("a"));
  EXPECT_THROW(dictionary.add(std::move(array)), std::invalid_argument);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->parent(), nullptr);
  Dictionary moved("a");
  moved.add(scalar("inner"));
  EXPECT_THROW(dictionary.add(std::move(moved)), std::invalid_argument);
  expectConsistent(moved, {"inner"});
}

/// An array that stands in no container.
class Loner : public ArrayBase {
 public:
  Loner() : ArrayBase("loner", object_model::ElementType::Int, {}) {}
  void setParent(Data* /*parent*/) override { throw std::runtime_error("not with me"); }
};

TEST(DictionaryTest, AnEntryThatRefusesAParentIsLeftAsItWas) {
  Dictionary dictionary = abc();
  auto entry = std::make_unique<Loner>();
  EXPECT_EQ(thrownBy<std::runtime_error>([&] { dictionary.add(std::move(entry)); }), "not with me");
  EXPECT_NE(entry, nullptr);
  EXPECT_FALSE(dictionary.contains("loner"));
  expectConsistent(dictionary, {"a", "b", "c"});
}

template <class Entry, class = void>
struct IsAddable : std::false_type {};
template <class Entry>
struct IsAddable<Entry,
                 std::void_t<decltype(std::declval<Dictionary&>().add(std::declval<Entry>()))>>
    : std::true_type {};

TEST(DictionaryTest, OnlyEntriesAreTakenInOverloads) {
  EXPECT_TRUE(IsAddable<DoubleArray>::value);
  EXPECT_TRUE(IsAddable<std::unique_ptr<Data>>::value);
  EXPECT_TRUE(IsAddable<std::unique_ptr<DoubleArray>>::value);
  EXPECT_FALSE(IsAddable<int>::value);
  EXPECT_FALSE(IsAddable<std::unique_ptr<int>>::value);
}

TEST(DictionaryTest, NoEntryCannotBeAdded) {
  Dictionary dictionary("d");
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { dictionary.add(std::unique_ptr<Data>()); }),
            "Dictionary 'd' was given no entry to add");
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { dictionary.add(std::unique_ptr<Dictionary>()); }),
            "Dictionary 'd' was given no entry to add");
  EXPECT_EQ(dictionary.getNumOfData(), 0U);
}

TEST(DictionaryTest, AMissingNameIsNamed) {
  Dictionary dictionary("d");
  dictionary.add(scalar("a"));
  EXPECT_FALSE(dictionary.contains("A"));
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { dictionary.data("A"); }),
            "Dictionary 'd' has no entry 'A'");
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { std::as_const(dictionary).data("a "); }),
            "Dictionary 'd' has no entry 'a '");
}

TEST(DictionaryTest, APositionWithoutEntryIsNamed) {
  Dictionary dictionary("d");
  dictionary.add(scalar("a"));
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { dictionary.getDataName(1); }),
            "Dictionary 'd' has 1 entries; there is none at position 1");
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { dictionary.data(-1); }),
            "Dictionary 'd' has 1 entries; there is none at position -1");
  EXPECT_EQ(thrownBy<std::out_of_range>(
                [&] { std::as_const(dictionary).data(std::numeric_limits<int>::min()); }),
            "Dictionary 'd' has 1 entries; there is none at position -2147483648");
}

// Nesting and moving

TEST(DictionaryTest, EntriesKnowTheWholeWayUp) {
  Dictionary root("root");
  auto& middle = root.add(Dictionary("middle"));
  auto& inner = middle.add(Dictionary("inner"));
  const auto& leaf = inner.add(scalar("leaf"));
  EXPECT_EQ(leaf.parent(), &inner);
  EXPECT_EQ(inner.parent(), &middle);
  EXPECT_EQ(middle.parent(), &root);
  EXPECT_EQ(root.parent(), nullptr);
}

TEST(DictionaryTest, AddingAFilledDictionaryKeepsItsEntriesParentTrue) {
  Dictionary inner("inner");
  inner.add(scalar("leaf"));
  Dictionary root("root");
  Dictionary& added = root.add(std::move(inner));
  expectConsistent(added, {"leaf"});
}

TEST(DictionaryTest, MovingTakesEverythingButTheContainer) {
  Dictionary container("container");
  Dictionary& source = container.add(Dictionary("source", "described"));
  source.add(scalar("a"));
  Dictionary moved(std::move(source));
  EXPECT_EQ(moved.getName(), "source");
  EXPECT_EQ(moved.getDescription(), "described");
  EXPECT_EQ(moved.parent(), nullptr);
  expectConsistent(moved, {"a"});
  EXPECT_EQ(source.getNumOfData(), 0U);
  EXPECT_FALSE(source.contains("a"));
}

TEST(DictionaryTest, MovesWithoutFailingButIsNotCopied) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<Dictionary>);
  EXPECT_FALSE(std::is_copy_constructible_v<Dictionary>);
}

TEST(DictionaryTest, AssignmentReplacesNameDescriptionAndEntries) {
  Dictionary target("target", "old");
  target.add(scalar("x"));
  Dictionary source("source", "new");
  source.add(scalar("a"));
  source.add(scalar("b"));
  target = std::move(source);
  EXPECT_EQ(target.getName(), "source");
  EXPECT_EQ(target.getDescription(), "new");
  expectConsistent(target, {"a", "b"});
  EXPECT_FALSE(target.contains("x"));
  EXPECT_EQ(source.getNumOfData(), 0U);
}

TEST(DictionaryTest, AssignmentToItselfChangesNothing) {
  Dictionary dictionary("d");
  dictionary.add(scalar("a"));
  Dictionary& itself = dictionary;
  dictionary = std::move(itself);
  EXPECT_EQ(dictionary.getName(), "d");
  expectConsistent(dictionary, {"a"});
}

TEST(DictionaryTest, AnEntryIsReplacedInItsPlaceUnderItsName) {
  Dictionary root("root");
  Dictionary& entry = root.add(Dictionary("entry"));
  Dictionary replacement("entry", "replaced");
  replacement.add(scalar("a"));
  entry = std::move(replacement);
  EXPECT_EQ(entry.parent(), &root);
  EXPECT_EQ(root.data("entry"), &entry);
  EXPECT_EQ(entry.getDescription(), "replaced");
  expectConsistent(entry, {"a"});
}

TEST(DictionaryTest, AnEntryDoesNotChangeItsName) {
  Dictionary root("root");
  Dictionary& entry = root.add(Dictionary("entry"));
  Dictionary other("other");
  other.add(scalar("a"));
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { entry = std::move(other); }),
            "Dictionary 'entry' is an entry and cannot take the name 'other'");
  expectConsistent(root, {"entry"});
  expectConsistent(other, {"a"});
}

TEST(DictionaryTest, ADictionaryMayBecomeOneOfItsEntries) {
  Dictionary dictionary("outer");
  dictionary.add(scalar("gone"));
  Dictionary& inner = dictionary.add(Dictionary("inner"));
  inner.add(scalar("kept"));
  dictionary = std::move(inner);
  EXPECT_EQ(dictionary.getName(), "inner");
  expectConsistent(dictionary, {"kept"});
}

TEST(DictionaryTest, ADictionaryIsNeverPutInsideItself) {
  Dictionary root("root");
  Dictionary& inner = root.add(Dictionary("inner"));
  const char* const message = "Dictionary 'root' cannot be put inside itself";
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { inner.add(std::move(root)); }), message);
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { root.add(std::move(root)); }), message);
  expectConsistent(root, {"inner"});
  Dictionary same("same");
  Dictionary& innerSame = same.add(Dictionary("same"));
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { innerSame = std::move(same); }),
            "Dictionary 'same' cannot be put inside itself");
  expectConsistent(same, {"same"});
}

// Paths and types

class DictionaryPathTest : public ::testing::Test {
 protected:
  Dictionary m_root{"root"};
  Dictionary& m_cells = m_root.add(Dictionary("cells"));
  DoubleArray& m_area = m_cells.add(scalar("area"));
  UIntArray& m_count = m_cells.add(UIntArray("n", {}, {1}));
};

TEST_F(DictionaryPathTest, AnEntryIsFoundAlongItsPathAsWhatItIs) {
  EXPECT_EQ(&m_root.at<DoubleArray>("cells/area"), &m_area);
  EXPECT_EQ(&std::as_const(m_root).at<UIntArray>("cells/n"), &m_count);
  EXPECT_EQ(&m_root.at<Dictionary>("cells"), &m_cells);
  EXPECT_EQ(&m_cells.at<object_model::Array>("area"), &m_area);
  EXPECT_EQ(&m_root.at("cells/area"), &m_area);
}

TEST_F(DictionaryPathTest, ASlashInFrontIsPassedOver) {
  EXPECT_EQ(&m_root.at("/cells/area"), &m_area);
}

TEST_F(DictionaryPathTest, NamesMayBeOfOneLetter) {
  const DoubleArray& inner = m_root.add(Dictionary("c")).add(scalar("n"));
  EXPECT_EQ(&m_root.at("c/n"), &inner);
}

TEST_F(DictionaryPathTest, ANameWithASlashGoesBefore) {
  const DoubleArray& slashed = m_root.add(scalar("cells/area"));
  const DoubleArray& inner = m_cells.add(scalar("x/y"));
  EXPECT_EQ(&m_root.at("cells/area"), &slashed);
  EXPECT_EQ(&m_root.at("cells/x/y"), &inner);
}

TEST_F(DictionaryPathTest, LeadsThroughDictionariesOfAllClasses) {
  Dictionary outer("outer");
  outer.add(std::make_unique<test::PlainDictionary>()).add(m_cells);
  EXPECT_EQ(&outer.at<DoubleArray>("dictionary/cells/area"), &m_area);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { outer.at("dictionary/dells/area"); }),
            "Dictionary 'outer' has no entry 'dictionary/dells/area': 'dictionary' has no 'dells'");
}

TEST_F(DictionaryPathTest, SaysHowFarThePathLeads) {
  const auto sentence = [this](const char* path) {
    return thrownBy<std::out_of_range>([&] { m_root.at(path); });
  };
  EXPECT_EQ(sentence("area"), "Dictionary 'root' has no entry 'area'");
  EXPECT_EQ(sentence("dells/area"),
            "Dictionary 'root' has no entry 'dells/area': it has no 'dells'");
  EXPECT_EQ(sentence("cells/volume"),
            "Dictionary 'root' has no entry 'cells/volume': 'cells' has no 'volume'");
  EXPECT_EQ(sentence("cells/area/x"),
            "Dictionary 'root' has no entry 'cells/area/x': 'cells/area' is no dictionary");
  EXPECT_EQ(sentence("cells/"), "Dictionary 'root' has no entry 'cells/': 'cells' has no ''");
  EXPECT_EQ(sentence("cells//area"),
            "Dictionary 'root' has no entry 'cells//area': 'cells' has no ''");
  EXPECT_EQ(sentence(""), "Dictionary 'root' has no entry ''");
  EXPECT_EQ(sentence("/"), "Dictionary 'root' has no entry '/': it has no ''");
}

TEST_F(DictionaryPathTest, SaysWhatIsThereAndWhatWasAskedFor) {
  EXPECT_EQ(thrownBy<InvalidCall>([&] { m_root.at<DoubleArray>("cells/n"); }),
            "Entry 'cells/n' of dictionary 'root' is an array of UInt "
            "(quillon::memory::TypedArray<unsigned long>), not a "
            "quillon::memory::TypedArray<double>");
  EXPECT_EQ(
      thrownBy<InvalidCall>([&] { std::as_const(m_root).at<object_model::Array>("cells"); }),
      "Entry 'cells' of dictionary 'root' is a dictionary (quillon::memory::Dictionary), not a "
      "object_model::Array");
}

// Taking out and renaming

TEST(DictionaryTest, RemovingLeavesTheOthersInTheirOrder) {
  Dictionary dictionary = abc();
  dictionary.remove("a");
  expectConsistent(dictionary, {"b", "c"});
  dictionary.remove("c");
  expectConsistent(dictionary, {"b"});
  dictionary.add(scalar("a"));
  expectConsistent(dictionary, {"b", "a"});
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { dictionary.remove("c"); }),
            "Dictionary 'd' has no entry 'c'");
  expectConsistent(dictionary, {"b", "a"});
}

TEST(DictionaryTest, AnExtractedEntryStandsInNoContainer) {
  Dictionary dictionary = abc();
  const Data* address = dictionary.data("b");
  std::unique_ptr<Data> entry = dictionary.extract("b");
  EXPECT_EQ(entry.get(), address);
  EXPECT_EQ(entry->parent(), nullptr);
  expectConsistent(dictionary, {"a", "c"});
  dictionary.add(std::move(entry));
  expectConsistent(dictionary, {"a", "c", "b"});
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { dictionary.extract("x"); }),
            "Dictionary 'd' has no entry 'x'");
}

TEST(DictionaryTest, ARenamedEntryKeepsItsPlace) {
  Dictionary dictionary = abc();
  dictionary.add(Dictionary("inner"));
  dictionary.rename("b", "B");
  dictionary.rename("inner", "b");
  expectConsistent(dictionary, {"a", "B", "c", "b"});
  EXPECT_FALSE(dictionary.contains("inner"));
}

TEST(DictionaryTest, RenamingToTheSameNameChangesNothing) {
  Dictionary dictionary = abc();
  dictionary.rename("b", "b");
  expectConsistent(dictionary, {"a", "b", "c"});
}

TEST(DictionaryTest, RenamingIsRefusedWhereItCannotBe) {
  Dictionary dictionary = abc();
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { dictionary.rename("x", "y"); }),
            "Dictionary 'd' has no entry 'x'");
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { dictionary.rename("a", "c"); }),
            "Dictionary 'd' already has an entry 'c'");
  dictionary.add(std::make_unique<test::PlainArray>());
  EXPECT_EQ(thrownBy<InvalidCall>([&] { dictionary.rename("array", "t"); }),
            "Dictionary 'd' cannot rename its entry 'array', which is of a class with names of its "
            "own (test::PlainArray)");
  expectConsistent(dictionary, {"a", "b", "c", "array"});
}

TEST(DictionaryTest, AnEntryIsRenamedByItsDictionaryAlone) {
  Dictionary dictionary("d");
  DoubleArray& array = dictionary.add(scalar("a"));
  Dictionary& inner = dictionary.add(Dictionary("inner"));
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { array.setName("b"); }),
            "Array 'a' is an entry and cannot take the name 'b'");
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] { inner.setName("b"); }),
            "Dictionary 'inner' is an entry and cannot take the name 'b'");
  array.setName("a");
  dictionary.setName("e");
  EXPECT_EQ(dictionary.getName(), "e");
  expectConsistent(dictionary, {"a", "inner"});
}

TEST(DictionaryTest, TheDescriptionIsReplaced) {
  Dictionary dictionary("d", "old");
  dictionary.setDescription("new");
  EXPECT_EQ(dictionary.getDescription(), "new");
}

TEST(DictionaryTest, OutOfMemoryNothingIsChanged) {
  const std::string longName = "a name that needs memory of its own";
  std::unique_ptr<Dictionary> dictionary;
  std::unique_ptr<Data> entry;
  const auto failing = [&](const std::function<void()>& run) {
    test::AllOrNothing operation(
        [&] {
          dictionary = std::make_unique<Dictionary>(abc());
          entry = std::make_unique<DoubleArray>(scalar(longName));
        },
        run, [&] { return ::testing::PrintToString(namesOf(*dictionary)); });
    return test::injectEveryFault(operation).allocations;
  };
  EXPECT_GE(
      failing([&] { dictionary->rename(dictionary->contains("b") ? "b" : longName, longName); }),
      1U);
  EXPECT_EQ(failing([&] {
              if (dictionary->contains("b")) {
                dictionary->remove("b");
              }
            }),
            0U);
  EXPECT_GE(failing([&] {
              if (entry != nullptr) {
                dictionary->add(std::move(entry));
              }
            }),
            1U);
}

TEST(DictionaryTest, ReservedOperationsDoNothing) {
  const Dictionary dictionary("d");
  dictionary.reservedDictionary0();
  dictionary.reservedDictionary1();
  EXPECT_EQ(dictionary.getNumOfData(), 0U);
}

}  // namespace
}  // namespace quillon::memory
