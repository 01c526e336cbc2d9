#include <gmock/gmock.h>
#include <quillon/memory/Selection.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;

class EntriesTest : public ::testing::Test {
 protected:
  EntriesTest() {
    for (const char* name : {"z", "a", "m"}) {
      m_dictionary.add(IntArray(name, {}, {1}));
    }
  }

  Dictionary m_dictionary{"d"};
};

TEST_F(EntriesTest, AnyDictionaryGivesItsEntriesInItsOrder) {
  Selection selection(m_dictionary, {"m", "z"});
  std::vector<std::string> names;
  for (const auto& [name, data] : entriesOf(selection)) {
    names.push_back(name);
    EXPECT_EQ(data, m_dictionary.data(name));
  }
  EXPECT_THAT(names, ElementsAre("z", "m"));
}

TEST_F(EntriesTest, EntriesOfAConstDictionaryAreConst) {
  const Dictionary& readOnly = m_dictionary;
  for (const auto& entry : entriesOf(readOnly)) {
    static_assert(std::is_same_v<decltype(entry.data), const object_model::Data*>);
    EXPECT_EQ(entry.data, readOnly.data(entry.name));
  }
}

TEST_F(EntriesTest, ADictionaryIsARangeItself) {
  std::vector<std::string> names;
  for (const auto& [name, data] : m_dictionary) {
    data->asArray();
    names.push_back(name);
  }
  EXPECT_THAT(names, ElementsAre("z", "a", "m"));
  const Dictionary& readOnly = m_dictionary;
  EXPECT_EQ(std::count_if(readOnly.begin(), readOnly.end(),
                          [](const auto& entry) { return entry.name > "b"; }),
            2);
}

TEST_F(EntriesTest, WithoutEntriesNothingIsVisited) {
  const Dictionary empty("d");
  EXPECT_TRUE(empty.begin() == empty.end());
  EXPECT_FALSE(m_dictionary.begin() == m_dictionary.end());
}

TEST_F(EntriesTest, SteppingAfterwardsGivesThePlaceBefore) {
  auto at = m_dictionary.begin();
  EXPECT_EQ((*at++).name, "z");
  EXPECT_EQ((*at).name, "a");
}

}  // namespace
}  // namespace quillon::memory
