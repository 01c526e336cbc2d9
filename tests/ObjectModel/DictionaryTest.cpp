#include <gtest/gtest.h>
#include <object_model/Dictionary.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

using test::PlainArray;
using test::PlainArrayInfo;
using test::PlainDictionary;

TEST(DictionaryTest, IsADictionaryAndNoArray) {
  const PlainDictionary dictionary;
  EXPECT_TRUE(dictionary.isDictionary());
  EXPECT_FALSE(dictionary.isArray());
}

TEST(DictionaryTest, CastsToItselfAndNotToAnArray) {
  PlainDictionary dictionary;
  Data& data = dictionary;
  EXPECT_EQ(data.asDictionary(), &dictionary);
  EXPECT_EQ(data.asArray(), nullptr);
  const Data& constant = dictionary;
  EXPECT_EQ(constant.asDictionary(), &dictionary);
  EXPECT_EQ(constant.asArray(), nullptr);
}

TEST(DictionaryTest, AnEntryByPositionIsTheOneUnderItsName) {
  PlainArray first(PlainArrayInfo("first"));
  PlainArray second(PlainArrayInfo("second"));
  PlainDictionary dictionary;
  dictionary.add(first);
  dictionary.add(second);
  EXPECT_EQ(dictionary.data(0), &first);
  EXPECT_EQ(dictionary.data(0), dictionary.data(dictionary.getDataName(0)));
  const PlainDictionary& constant = dictionary;
  EXPECT_EQ(constant.data(1), &second);
  EXPECT_EQ(constant.data(1), constant.data(constant.getDataName(1)));
}

/// Writes down what it is asked.
class RecordingDictionary : public PlainDictionary {
 public:
  std::string getDataName(int index) const override {
    calls.push_back("getDataName(" + std::to_string(index) + ")");
    return "name of " + std::to_string(index);
  }
  using PlainDictionary::data;
  Data* data(const std::string& name) override {
    calls.push_back("data(" + name + ")");
    return nullptr;
  }
  const Data* data(const std::string& name) const override {
    calls.push_back("data(" + name + ") const");
    return nullptr;
  }

  mutable std::vector<std::string> calls;
};

TEST(DictionaryTest, AccessByPositionIsNotCheckedAndKeepsItsConstness) {
  RecordingDictionary recording;
  EXPECT_EQ(recording.data(-1), nullptr);
  EXPECT_EQ(std::as_const(recording).data(99), nullptr);
  EXPECT_EQ(recording.calls,
            (std::vector<std::string>{"getDataName(-1)", "data(name of -1)", "getDataName(99)",
                                      "data(name of 99) const"}));
}

TEST(DictionaryTest, ExceptionsOfTheConcreteClassPassThrough) {
  class Failing : public PlainDictionary {
   public:
    std::string getDataName(int) const override { throw std::range_error("no name"); }
  };
  Failing failing;
  EXPECT_EQ(test::thrownBy<std::range_error>([&] { failing.data(0); }), "no name");
  EXPECT_EQ(test::thrownBy<std::range_error>([&] { std::as_const(failing).data(0); }), "no name");
}

}  // namespace
}  // namespace object_model
