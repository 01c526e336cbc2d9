#include <gtest/gtest.h>
#include <object_model/ElementTypeHelper.h>
#include <object_model/Namespace.h>
#include <object_model/PhysicalInformation.h>

#include <memory>
#include <sstream>

#include "support/FaultInjection.h"
#include "support/Interfaces.h"
#include "support/Values.h"

namespace object_model {
namespace {

// Too long to be kept without an allocation.
const std::string LONG = "a name that needs memory of its own";

/// Counts the allocations that failed, one after the other, in a call that changes nothing.
std::size_t failing(const std::function<void()>& run) {
  test::AllOrNothing operation([] {}, run, [] { return std::string(); });
  return test::injectEveryFault(operation).allocations;
}

class RegistryOutOfMemory : public ::testing::Test {
 protected:
  void renew() {
    m_registry = std::make_unique<Namespace>();
    for (const char* name : {"b", "d"}) {
      m_registry->registerObject(name + LONG, &m_info);
    }
  }

  std::string content() const {
    std::ostringstream text;
    for (unsigned long i = 0; i < m_registry->getNumOfObject(); ++i) {
      text << m_registry->getObjectName(i) << ": " << std::as_const(*m_registry).getInfo(i) << "\n";
    }
    return text.str();
  }

  /// How many allocations failed, one after the other, each of them leaving the registry as it was.
  std::size_t failing(const std::function<void()>& run) {
    test::AllOrNothing operation([this] { renew(); }, run, [this] { return content(); });
    const test::Faults faults = test::injectEveryFault(operation);
    report(faults);
    return faults.allocations;
  }

  std::unique_ptr<Namespace> m_registry;
  test::PlainDictionaryInfo m_info;
  test::PlainDictionaryInfo m_otherInfo;
};

TEST_F(RegistryOutOfMemory, RegistersANameOrChangesNothing) {
  const std::string unknown = "c" + LONG;
  EXPECT_EQ(failing([&] { m_registry->registerObject(unknown, &m_info); }), 2U);
}

TEST_F(RegistryOutOfMemory, NeedsNoneForANameThatIsRegistered) {
  const std::string known = "b" + LONG;
  EXPECT_EQ(failing([&] { m_registry->registerObject(known, &m_otherInfo); }), 0U);
  EXPECT_EQ(failing([&] { m_registry->getInfoByName(known); }), 0U);
  EXPECT_EQ(failing([&] { m_registry->getInfo(known); }), 0U);
}

TEST_F(RegistryOutOfMemory, RegistersANameThatIsAskedForOrChangesNothing) {
  const std::string unknown = "c" + LONG;
  EXPECT_EQ(failing([&] { m_registry->getInfoByName(unknown); }), 2U);
}

TEST_F(RegistryOutOfMemory, IsNotChangedByAFailingQuestion) {
  const std::string unknown = "c" + LONG;
  EXPECT_GE(failing([&] { m_registry->getInfo(unknown); }), 1U);
  EXPECT_EQ(failing([&] { m_registry->getObjectName(1); }), 1U);
}

TEST_F(RegistryOutOfMemory, IsNotMade) {
  EXPECT_EQ(failing([] { const Namespace registry; }), 1U);
}

class TupleXOutOfMemory : public ::testing::Test {
 protected:
  std::size_t failing(const std::function<void(TupleX&)>& change) {
    std::unique_ptr<TupleX> tuple;
    test::AllOrNothing operation(
        [&] {
          tuple = std::make_unique<TupleX>(TupleX{1, 2});
        },
        [&] { change(*tuple); }, [&] { return ::testing::PrintToString(test::valuesOf(*tuple)); });
    return test::injectEveryFault(operation).allocations;
  }
};

TEST_F(TupleXOutOfMemory, ChangesInWholeOrNotAtAll) {
  const TupleX longer(100UL);
  const TupleX empty(0UL);
  std::vector<unsigned long> values(50, 7);
  const test::View view(values.data(), values.size());
  EXPECT_EQ(failing([&](TupleX& tuple) { tuple = longer; }), 1U);
  EXPECT_EQ(failing([&](TupleX& tuple) { tuple = view; }), 1U);
  EXPECT_EQ(failing([&](TupleX& tuple) { tuple = empty; }), 0U);
  EXPECT_EQ(failing([](TupleX& tuple) { tuple.resize(100); }), 1U);
  EXPECT_EQ(failing([](TupleX& tuple) { tuple.resize(1); }), 0U);
  EXPECT_EQ(failing([](TupleX& tuple) { const TupleX copy(tuple); }), 2U);
}

TEST(OutOfMemory, IsReportedByWhateverNeedsSome) {
  const test::PlainArray array(test::PlainArrayInfo(LONG, ElementType::Int, LONG));
  EXPECT_EQ(failing([&] { array.getName(); }), 1U);
  EXPECT_EQ(failing([&] { array.getDescription(); }), 1U);
  EXPECT_GE(failing([&] { array.getValueAsDouble(array.size()); }), 1U);
  EXPECT_GE(failing([&] { array.getInformation()->asDictionaryInfo(); }), 1U);
  EXPECT_GE(failing([] { test::PlainDictionaryInfo().asArrayInfo(); }), 1U);
  EXPECT_GE(failing([] { helper::sizeOfElementType(ElementType::Dictionary); }), 1U);
  const std::string unknown = LONG;
  EXPECT_GE(failing([&] { helper::determinePhysicalInformation(unknown.c_str()); }), 1U);
  EXPECT_GE(failing([] { helper::determinePhysicalDimension(PhysicalInformation{15}); }), 1U);
  const InvalidCall error(LONG);
  EXPECT_EQ(failing([&] { error.what(); }), 1U);
  EXPECT_EQ(failing([&] { const InvalidCall copy(error); }), 1U);
}

TEST(OutOfMemory, IsNoMatterWhereNoneIsNeeded) {
  EXPECT_EQ(failing([] { helper::determinePhysicalInformation("SQUARE_INTENSITY"); }), 0U);
  EXPECT_EQ(failing([] { helper::determinePhysicalDimension(PhysicalInformation::AREA); }), 0U);
  EXPECT_EQ(failing([] { helper::sizeOfElementType(ElementType::String); }), 0U);
  EXPECT_EQ(failing([] { test::PlainAxisInfo(AxisType::Channel).getAxisName(); }), 0U);
}

}  // namespace
}  // namespace object_model
