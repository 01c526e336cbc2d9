/// @file
/// The suite for array classes.
#pragma once

#include <gtest/gtest.h>
#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/InvalidCall.h>
#include <object_model/TupleX.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>
#include <quillon/testing/Blocks.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace quillon::testing {

/// Whether a subject says which values its array has, and their type.
template <class Subject, class = void>
struct ExpectedValues {
  static constexpr bool ARE_KNOWN = false;  ///< whether it says so
};
// Of a subject that says so.
/// @cond
template <class Subject>
struct ExpectedValues<Subject, std::void_t<decltype(Subject::values())>> {
  static constexpr bool ARE_KNOWN = true;
  using Value = typename decltype(Subject::values())::value_type;
};
/// @endcond

/// Checks an array class against what the library expects of it:
/// `INSTANTIATE_TYPED_TEST_SUITE_P(Pictures, ArraySuite, PictureSubject);`, after
/// `using namespace quillon::testing;`.
///
/// A subject is a class with a function `make()` that returns a `std::unique_ptr` or a
/// `std::shared_ptr` to a new array, of few enough values to read each of them several times. It
/// may have a function `values()`, too, that returns a vector of the values that all positions
/// hold, dimension 0 varying fastest.
template <class Subject>
class ArraySuite : public ::testing::Test {
 protected:
  /// Fails where there is nothing to check.
  void SetUp() override {
    ASSERT_NE(m_array, nullptr) << "make() gives no array";
    ASSERT_NE(m_array->getInformation(), nullptr) << "The array has no descriptor";
    ASSERT_NE(m_array->getInformation()->asArrayInfo(), nullptr)
        << "The descriptor is not that of an array";
  }

  /// Calls `check(TypeTag<T>())` with the C++ type of the array's elements.
  template <class Check>
  void withElementType(const Check& check) const {
    EXPECT_TRUE(memory::visitElementType(array().getElementType(), check))
        << "The element type is none of the enumeration";
  }

  /// The array of the subject, for writing.
  object_model::Array& writable() { return *m_array; }

  /// The array of the subject.
  const object_model::Array& array() const { return *m_array; }

 private:
  const decltype(Subject::make()) m_array = Subject::make();
};

// The tests, whose names say what they check.
/// @cond

TYPED_TEST_SUITE_P(ArraySuite);

TYPED_TEST_P(ArraySuite, IsAnArrayAndNothingElse) {
  object_model::Data& data = this->writable();
  const object_model::Data& readOnly = data;
  EXPECT_TRUE(data.isArray());
  EXPECT_FALSE(data.isDictionary());
  EXPECT_FALSE(data.isDynamicDictionary());
  EXPECT_EQ(data.asArray(), &data);
  EXPECT_EQ(readOnly.asArray(), &data);
  EXPECT_EQ(data.asDictionary(), nullptr);
  EXPECT_EQ(readOnly.asDictionary(), nullptr);
  EXPECT_EQ(data.asDynamicDictionary(), nullptr);
  EXPECT_EQ(readOnly.asDynamicDictionary(), nullptr);
}

TYPED_TEST_P(ArraySuite, DescriptorIsThatOfAnArray) {
  const object_model::DataInfo* info = this->array().getInformation();
  EXPECT_TRUE(info->isArrayInfo());
  EXPECT_FALSE(info->isDictionaryInfo());
  EXPECT_THROW(info->asDictionaryInfo(), object_model::InvalidCall);
  EXPECT_EQ(info->asArrayInfo()->getElementType(), this->array().getElementType());
  EXPECT_EQ(info->getName(), this->array().getName());
}

TYPED_TEST_P(ArraySuite, EachDimensionHasAnAxis) {
  const object_model::ArrayInfo* info = this->array().getInformation()->asArrayInfo();
  for (unsigned long k = 0; k < this->array().size().size(); ++k) {
    EXPECT_NE(info->getAxisInfo(k), nullptr) << "dimension " << k;
  }
}

TYPED_TEST_P(ArraySuite, ShapeStaysTheSame) {
  const object_model::Tuple& shape = this->array().size();
  const std::vector<unsigned long> before = extentsOf(shape);
  EXPECT_EQ(&this->array().size(), &shape);
  EXPECT_EQ(extentsOf(shape), before);
}

TYPED_TEST_P(ArraySuite, AccessorGivesTheSameValueAgain) {
  this->withElementType([this](auto tag) {
    using T = typename decltype(tag)::Type;
    for (const auto& position : positionsIn(extentsOf(this->array().size()))) {
      EXPECT_TRUE(isSame(readAt<T>(this->array(), position), readAt<T>(this->array(), position)))
          << "at " << ::testing::PrintToString(position);
    }
  });
}

TYPED_TEST_P(ArraySuite, AccessorGivesTheExpectedValues) {
  if constexpr (ExpectedValues<TypeParam>::ARE_KNOWN) {
    const auto values = TypeParam::values();
    using Value = typename ExpectedValues<TypeParam>::Value;
    using Traits = memory::ElementTraits<memory::ElementOf<Value>>;
    ASSERT_EQ(Traits::NAME, memory::nameOf(this->array().getElementType()))
        << "The expected values are of another type";
    const auto positions = positionsIn(extentsOf(this->array().size()));
    ASSERT_EQ(positions.size(), values.size());
    for (std::size_t k = 0; k < positions.size(); ++k) {
      EXPECT_TRUE(isValueAt<Value>(this->array(), positions[k], values[k]))
          << "at " << ::testing::PrintToString(positions[k]);
    }
  }
}

TYPED_TEST_P(ArraySuite, OtherAccessorsRefuse) {
  const object_model::TupleX first(this->array().size().size());
  const auto expectRefusal = [&](auto tag) {
    using Traits = memory::ElementTraits<typename decltype(tag)::Type>;
    if (Traits::TYPE != this->array().getElementType()) {
      EXPECT_THROW((this->array().*Traits::READ)(first), object_model::InvalidCall)
          << "read as " << Traits::NAME;
    }
  };
  for (int type = 0; memory::visitElementType(object_model::ElementType(type), expectRefusal);) {
    ++type;
  }
}

TYPED_TEST_P(ArraySuite, BulkValuesAreWhatTheAccessorGives) {
  const auto* bulk = dynamic_cast<const object_model::BulkValues*>(&this->array());
  if (bulk == nullptr) {
    return;  // it need not offer them
  }
  ASSERT_NE(memory::bulkValuesOf(this->array()), nullptr)
      << memory::nameOf(bulk->storedType()) << " is not stored for "
      << memory::nameOf(this->array().getElementType());
  memory::visitStoredType(bulk->storedType(), [&](auto tag) {
    using Stored = typename decltype(tag)::Type;
    for (const auto& block : blocksIn(extentsOf(this->array().size()))) {
      EXPECT_TRUE(areBulkValuesTrue<Stored>(this->array(), *bulk, block));
    }
  });
}

TYPED_TEST_P(ArraySuite, ChunksHaveAnExtentInEachDimension) {
  const auto* bulk = dynamic_cast<const object_model::BulkValues*>(&this->array());
  const unsigned long* chunks = bulk == nullptr ? nullptr : bulk->chunkExtents();
  for (unsigned long k = 0; chunks != nullptr && k < this->array().size().size(); ++k) {
    EXPECT_GT(chunks[k], 0U) << "dimension " << k;
  }
}

TYPED_TEST_P(ArraySuite, CoordinatesFitTheirAxes) {
  const auto* coordinates = dynamic_cast<const memory::HasCoordinates*>(&this->array());
  const std::vector<unsigned long> shape = extentsOf(this->array().size());
  for (unsigned long k = 0; coordinates != nullptr && k < shape.size(); ++k) {
    if (const auto along = coordinates->coordinates(k)) {
      EXPECT_EQ(extentsOf(along->size()), std::vector<unsigned long>{shape[k]})
          << "dimension " << k;
    }
  }
}

TYPED_TEST_P(ArraySuite, TimesAreTheSameInEachBlock) {
  const auto* times = dynamic_cast<const memory::HasTimes*>(&this->array());
  const std::vector<unsigned long> shape = extentsOf(this->array().size());
  const std::vector<unsigned long> origin(shape.size(), 0);
  if (times == nullptr) {
    return;  // it need not offer them
  }
  const auto positions = positionsIn(shape);
  std::vector<long> all(positions.size());
  times->readTimes(origin.data(), shape.data(), all.data());
  const std::vector<unsigned long> one(shape.size(), 1);
  for (std::size_t k = 0; k < positions.size(); ++k) {
    long alone = 0;
    times->readTimes(positions[k].data(), one.data(), &alone);
    EXPECT_EQ(alone, all[k]) << "at " << ::testing::PrintToString(positions[k]);
  }
}

TYPED_TEST_P(ArraySuite, AttributesHaveNamesOfTheirOwn) { expectUniqueAttributes(this->array()); }

TYPED_TEST_P(ArraySuite, ParentIsWhatItIsTold) {
  memory::Dictionary container("container");
  object_model::Array& array = this->writable();
  array.setParent(&container);
  EXPECT_EQ(array.parent(), &container);
  EXPECT_EQ(this->array().parent(), &container);
  array.setParent(nullptr);
  EXPECT_EQ(array.parent(), nullptr);
}

REGISTER_TYPED_TEST_SUITE_P(ArraySuite, IsAnArrayAndNothingElse, DescriptorIsThatOfAnArray,
                            EachDimensionHasAnAxis, ShapeStaysTheSame,
                            AccessorGivesTheSameValueAgain, AccessorGivesTheExpectedValues,
                            OtherAccessorsRefuse, BulkValuesAreWhatTheAccessorGives,
                            ChunksHaveAnExtentInEachDimension, CoordinatesFitTheirAxes,
                            TimesAreTheSameInEachBlock, AttributesHaveNamesOfTheirOwn,
                            ParentIsWhatItIsTold);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ArraySuite);

/// @endcond

}  // namespace quillon::testing
