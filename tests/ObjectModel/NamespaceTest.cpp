#include <gtest/gtest.h>
#include <object_model/InvalidCall.h>
#include <object_model/Namespace.h>
#include <quillon/memory/Descriptors.h>

#include <type_traits>
#include <vector>

namespace object_model {
namespace {

using quillon::memory::DictionaryDescriptor;

class Registry : public ::testing::Test {
 protected:
  std::string errorOf(const std::string& name) {
    try {
      m_registry.getInfo(name);
    } catch (const InvalidCall& error) {
      return error.what();
    }
    return "no error";
  }

  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (unsigned long i = 0; i < m_registry.getNumOfObject(); ++i) {
      all.push_back(m_registry.getObjectName(i));
    }
    return all;
  }

  Namespace m_registry;
  const Namespace& m_reader = m_registry;
  const DictionaryDescriptor m_first{"first"};
  const DictionaryDescriptor m_second{"second"};
  const DictionaryDescriptor m_third{"third"};
};

using Names = std::vector<std::string>;

TEST_F(Registry, IsEmptyWhenMade) {
  EXPECT_EQ(m_registry.getNumOfObject(), 0U);
  EXPECT_EQ(errorOf("a"), "Invalid object name (a).");
  EXPECT_EQ(errorOf(""), "Invalid object name ().");
}

TEST_F(Registry, ListsNamesInAscendingOrder) {
  m_registry.registerObject("b", &m_first);
  m_registry.registerObject("a", &m_second);
  m_registry.registerObject("c", &m_third);
  EXPECT_EQ(names(), (Names{"a", "b", "c"}));
  EXPECT_EQ(m_reader.getInfo(0UL), &m_second);
  EXPECT_EQ(m_reader.getInfo(1UL), &m_first);
  EXPECT_EQ(m_reader.getInfo(2UL), &m_third);
}

TEST_F(Registry, OrdersNamesByTheirBytes) {
  for (const char* name : {"abc", "Abc", "ab", "a\xC3\xA4", "az", ""}) {
    m_registry.registerObject(name, nullptr);
  }
  EXPECT_EQ(names(), (Names{"", "Abc", "ab", "abc", "az", "a\xC3\xA4"}));
}

TEST_F(Registry, KeepsTheLastRegistrationOfAName) {
  m_registry.registerObject("a", &m_first);
  m_registry.registerObject("a", &m_second);
  EXPECT_EQ(names(), Names{"a"});
  EXPECT_EQ(m_registry.getInfo("a"), &m_second);
  m_registry.registerObject("a", nullptr);
  EXPECT_EQ(m_registry.getInfo("a"), nullptr);
}

TEST_F(Registry, MatchesWholeNamesInTheirCase) {
  m_registry.registerObject("Abc", &m_first);
  m_registry.registerObject("abc", &m_second);
  EXPECT_EQ(m_registry.getInfo("Abc"), &m_first);
  EXPECT_EQ(m_registry.getInfo("abc"), &m_second);
  EXPECT_EQ(errorOf("ab"), "Invalid object name (ab).");
  EXPECT_EQ(errorOf("abc "), "Invalid object name (abc ).");
  EXPECT_EQ(m_registry.getNumOfObject(), 2U);
}

TEST_F(Registry, TakesTheEmptyNameAndNamesWithZeroBytes) {
  m_registry.registerObject("", &m_first);
  m_registry.registerObject(std::string("a\0b", 3), &m_second);
  EXPECT_EQ(m_registry.getInfo(""), &m_first);
  EXPECT_EQ(m_registry.getInfo(std::string("a\0b", 3)), &m_second);
  EXPECT_EQ(errorOf("a"), "Invalid object name (a).");
}

// Deliberate: asking for an unknown name by getInfoByName registers it.
TEST_F(Registry, RegistersAnUnknownNameThatIsAskedForByName) {
  EXPECT_EQ(m_reader.getInfoByName("new"), nullptr);
  EXPECT_EQ(m_registry.getNumOfObject(), 1U);
  EXPECT_EQ(m_reader.getObjectName(0), "new");
  EXPECT_EQ(m_reader.getInfo(0UL), nullptr);
  EXPECT_EQ(m_registry.getInfo("new"), nullptr);
  m_registry.registerObject("new", &m_first);
  EXPECT_EQ(m_registry.getInfo("new"), &m_first);
  EXPECT_EQ(m_registry.getNumOfObject(), 1U);
}

TEST_F(Registry, FindsAKnownNameByNameWithoutChange) {
  m_registry.registerObject("a", &m_first);
  EXPECT_EQ(m_reader.getInfoByName("a"), &m_first);
  EXPECT_EQ(m_registry.getNumOfObject(), 1U);
}

TEST_F(Registry, ChangesNothingWhenANameIsNotFound) {
  EXPECT_EQ(errorOf("a"), "Invalid object name (a).");
  EXPECT_EQ(m_registry.getNumOfObject(), 0U);
}

TEST_F(Registry, CopiesNames) {
  std::string name = "a";
  m_registry.registerObject(name, &m_first);
  name = "z";
  std::string listed = m_registry.getObjectName(0);
  listed += "!";
  EXPECT_EQ(names(), Names{"a"});
}

TEST(RegistryOfTheProcess, IsOneObject) {
  EXPECT_EQ(&Namespace::instance(), &Namespace::instance());
}

TEST(RegistryOfTheProcess, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Namespace>);
  EXPECT_FALSE(std::is_copy_assignable_v<Namespace>);
}

}  // namespace
}  // namespace object_model
