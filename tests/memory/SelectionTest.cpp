#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/Selection.h>
#include <quillon/memory/TypedArray.h>

#include <stdexcept>

#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using test::thrownBy;

class SelectionTest : public ::testing::Test {
 protected:
  SelectionTest() {
    for (const char* name : {"A", "B", "C"}) {
      m_group.add(IntArray(name, {Axis("x", 1)}, {1}));
    }
  }

  Dictionary m_group{"cells", "what was measured"};
};

TEST_F(SelectionTest, EntriesStandInTheOrderOfTheGroup) {
  const Selection selection(m_group, {"C", "A"});
  ASSERT_EQ(selection.getNumOfData(), 2);
  EXPECT_EQ(selection.getDataName(0), "A");
  EXPECT_EQ(selection.getDataName(1), "C");
}

TEST_F(SelectionTest, EntriesAreThoseOfTheGroup) {
  Selection selection(m_group, {"B"});
  const Selection& readOnly = selection;
  EXPECT_EQ(selection.data("B"), m_group.data("B"));
  EXPECT_EQ(readOnly.data("B"), m_group.data("B"));
  EXPECT_EQ(static_cast<object_model::Dictionary&>(selection).data(0), m_group.data("B"));
  EXPECT_EQ(selection.data("B")->parent(), &m_group);
}

TEST_F(SelectionTest, NameGivenTwiceIsOneEntry) {
  EXPECT_EQ(Selection(m_group, {"A", "A"}).getNumOfData(), 1);
}

TEST_F(SelectionTest, PathsChooseFromDictionariesWithin) {
  Dictionary inner("li");
  inner.add(IntArray("P", {Axis("x", 1)}, {1}));
  inner.add(IntArray("Q", {Axis("x", 1)}, {2}));
  m_group.add(std::move(inner));
  m_group.add(Dictionary("otsu"));
  object_model::Data* const whole = m_group.data("li");
  Selection selection(m_group, {"li/Q", "A", "otsu/"});
  EXPECT_EQ(selection.getNumOfData(), 3);
  const object_model::Dictionary* part = selection.data("li")->asDictionary();
  ASSERT_NE(part, nullptr);
  EXPECT_EQ(part->getNumOfData(), 1);
  EXPECT_EQ(part->data(0), whole->asDictionary()->data("Q"));
  EXPECT_EQ(part->parent(), &m_group);
  EXPECT_EQ(selection.data("otsu")->asDictionary()->getNumOfData(), 0);
  EXPECT_EQ(Selection(m_group, {"li/Q", "li"}).data("li"), whole);
  EXPECT_THROW(Selection(m_group, {"li/R"}), std::out_of_range);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { Selection(m_group, {"A/Q"}); }),
            "The entry 'A' is no dictionary to choose from");
}

TEST_F(SelectionTest, WhatIsChosenWholeIsNotChosenFrom) {
  m_group.add(Dictionary("li"));
  const Selection selection(m_group, {"li", "li/R", "A", "A/Q"});
  EXPECT_EQ(selection.getNumOfData(), 2);
  EXPECT_EQ(selection.data("li"), m_group.data("li"));
  EXPECT_EQ(selection.data("A"), m_group.data("A"));
}

TEST_F(SelectionTest, NoNamesGiveNoEntries) { EXPECT_EQ(Selection(m_group, {}).getNumOfData(), 0); }

TEST_F(SelectionTest, NameThatTheGroupLacksThrows) {
  EXPECT_THROW(Selection(m_group, {"A", "Q"}), std::out_of_range);
}

TEST_F(SelectionTest, EntryThatWasNotChosenIsNotThere) {
  Selection selection(m_group, {"A"});
  const Selection& readOnly = selection;
  const char* const message = "The selection has no entry 'B'";
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { selection.data("B"); }), message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { readOnly.data("B"); }), message);
  EXPECT_THROW(selection.getDataName(1), std::out_of_range);
  EXPECT_THROW(selection.getDataName(-1), std::out_of_range);
}

TEST_F(SelectionTest, DescriptionIsTheGroups) {
  Selection selection(m_group, {"A"});
  EXPECT_EQ(selection.getName(), "cells");
  EXPECT_EQ(selection.getDescription(), "what was measured");
  EXPECT_TRUE(selection.isDictionary());
  EXPECT_FALSE(selection.isDynamicDictionary());
  EXPECT_EQ(selection.asDynamicDictionary(), nullptr);
}

TEST_F(SelectionTest, StandsWhereTheGroupStands) {
  Dictionary root("/");
  Dictionary& group = root.add(std::move(m_group));
  Selection selection(group, {"A"});
  EXPECT_EQ(selection.parent(), &root);
  EXPECT_EQ(static_cast<const Selection&>(selection).parent(), &root);
  EXPECT_EQ(thrownBy<InvalidCall>([&] { selection.setParent(nullptr); }),
            "A selection stands in no container");
}

TEST_F(SelectionTest, AttributesAreTheGroups) {
  m_group.setAttribute("k", "v");
  EXPECT_EQ(Selection(m_group, {"A"}).attributes(), m_group.attributes());
}

TEST_F(SelectionTest, OfAGroupThatOffersNoneHasNoAttributes) {
  test::PlainDictionary group;
  EXPECT_TRUE(Selection(group, {}).attributes().empty());
}

}  // namespace
}  // namespace quillon::memory
