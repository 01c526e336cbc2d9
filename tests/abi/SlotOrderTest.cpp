// The place of every virtual operation in its class's virtual table. Libraries that were built
// against the headers call by place, so a released place never changes.
#include <gtest/gtest.h>
#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/BulkValues.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/DynamicDictionary.h>
#include <object_model/InvalidCall.h>
#include <object_model/Request.h>
#include <object_model/TupleX.h>

#include <string>

#include "abi/SlotOf.h"

namespace object_model {
namespace {

using binary::Slot;
using binary::slotAfter;
using binary::slotOf;

class SlotOrderTest : public ::testing::TestWithParam<Slot> {};

TEST_P(SlotOrderTest, IsAsReleased) { EXPECT_EQ(GetParam().actual, GetParam().released); }

std::string operationOf(const ::testing::TestParamInfo<Slot>& row) { return row.param.operation; }

INSTANTIATE_TEST_SUITE_P(Exception, SlotOrderTest,
                         ::testing::Values(Slot{"what", slotOf(&Exception::what), 0}), operationOf);

INSTANTIATE_TEST_SUITE_P(InvalidCall, SlotOrderTest,
                         ::testing::Values(Slot{"what", slotOf(&InvalidCall::what), 0}),
                         operationOf);

// Slots 0 and 1 are the destructor's.
INSTANTIATE_TEST_SUITE_P(
    Data, SlotOrderTest,
    ::testing::Values(
        Slot{"getInformation", slotOf(&Data::getInformation), 2},
        Slot{"parentConst", slotOf<const Data* (Data::*)() const>(&Data::parent), 3},
        Slot{"parent", slotOf<Data* (Data::*)()>(&Data::parent), 4},
        Slot{"setParent", slotOf(&Data::setParent), 5},
        Slot{"isDictionary", slotOf(&Data::isDictionary), 6},
        Slot{"isDynamicDictionary", slotOf(&Data::isDynamicDictionary), 7},
        Slot{"isArray", slotOf(&Data::isArray), 8},
        Slot{"asDictionaryConst", slotOf<const Dictionary* (Data::*)() const>(&Data::asDictionary),
             9},
        Slot{"asArrayConst", slotOf<const Array* (Data::*)() const>(&Data::asArray), 10},
        Slot{"asDictionary", slotOf<Dictionary* (Data::*)()>(&Data::asDictionary), 11},
        Slot{"asDynamicDictionary",
             slotOf<DynamicDictionary* (Data::*)()>(&Data::asDynamicDictionary), 12},
        Slot{"asDynamicDictionaryConst",
             slotOf<const DynamicDictionary* (Data::*)() const>(&Data::asDynamicDictionary), 13},
        Slot{"asArray", slotOf<Array* (Data::*)()>(&Data::asArray), 14},
        Slot{"version", slotOf(&Data::version), 15}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    Array, SlotOrderTest,
    ::testing::Values(
        Slot{"getInformation", slotOf(&Array::getInformation), 2},
        Slot{"parentConst", slotOf<const Data* (Array::*)() const>(&Array::parent), 3},
        Slot{"parent", slotOf<Data* (Array::*)()>(&Array::parent), 4},
        Slot{"setParent", slotOf(&Array::setParent), 5},
        Slot{"isDictionary", slotOf(&Array::isDictionary), 6},
        Slot{"isDynamicDictionary", slotOf(&Array::isDynamicDictionary), 7},
        Slot{"isArray", slotOf(&Array::isArray), 8},
        Slot{"asDictionaryConst",
             slotOf<const Dictionary* (Array::*)() const>(&Array::asDictionary), 9},
        Slot{"asArrayConst", slotOf<const Array* (Array::*)() const>(&Array::asArray), 10},
        Slot{"asDictionary", slotOf<Dictionary* (Array::*)()>(&Array::asDictionary), 11},
        Slot{"asDynamicDictionary",
             slotOf<DynamicDictionary* (Array::*)()>(&Array::asDynamicDictionary), 12},
        Slot{"asDynamicDictionaryConst",
             slotOf<const DynamicDictionary* (Array::*)() const>(&Array::asDynamicDictionary), 13},
        Slot{"asArray", slotOf<Array* (Array::*)()>(&Array::asArray), 14},
        Slot{"version", slotOf(&Array::version), 15},
        Slot{"getValueAsDouble", slotOf(&Array::getValueAsDouble), 16},
        Slot{"getValueAsUInt", slotOf(&Array::getValueAsUInt), 17},
        Slot{"getValueAsInt", slotOf(&Array::getValueAsInt), 18},
        Slot{"getValueAsString", slotOf(&Array::getValueAsString), 19},
        Slot{"getValueAsDictionary", slotOf(&Array::getValueAsDictionary), 20},
        Slot{"getValueAsBoolean", slotOf(&Array::getValueAsBoolean), 21},
        Slot{"getValueAsComplex", slotOf(&Array::getValueAsComplex), 22},
        Slot{"size", slotOf(&Array::size), 23},
        Slot{"getPhysicalUnit", slotOf(&Array::getPhysicalUnit), 24},
        Slot{"getUnit", slotOf(&Array::getUnit), 25},
        Slot{"getWritingInterface",
             slotOf<WritingInterface* (Array::*)()>(&Array::getWritingInterface), 26},
        Slot{"getWritingInterfaceConst",
             slotOf<const WritingInterface* (Array::*)() const>(&Array::getWritingInterface), 27}),
    operationOf);

// Without a destructor among them: arrays are destroyed as arrays.
INSTANTIATE_TEST_SUITE_P(
    BulkValues, SlotOrderTest,
    ::testing::Values(Slot{"storedType", slotOf(&BulkValues::storedType), 0},
                      Slot{"valuesInPlace", slotOf(&BulkValues::valuesInPlace), 1},
                      Slot{"readValues", slotOf(&BulkValues::readValues), 2},
                      Slot{"chunkExtents", slotOf(&BulkValues::chunkExtents), 3}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    Dictionary, SlotOrderTest,
    ::testing::Values(
        Slot{"getInformation", slotOf(&Dictionary::getInformation), 2},
        Slot{"parentConst", slotOf<const Data* (Dictionary::*)() const>(&Dictionary::parent), 3},
        Slot{"parent", slotOf<Data* (Dictionary::*)()>(&Dictionary::parent), 4},
        Slot{"setParent", slotOf(&Dictionary::setParent), 5},
        Slot{"isDictionary", slotOf(&Dictionary::isDictionary), 6},
        Slot{"isDynamicDictionary", slotOf(&Dictionary::isDynamicDictionary), 7},
        Slot{"isArray", slotOf(&Dictionary::isArray), 8},
        Slot{"asDictionaryConst",
             slotOf<const Dictionary* (Dictionary::*)() const>(&Dictionary::asDictionary), 9},
        Slot{"asArrayConst", slotOf<const Array* (Dictionary::*)() const>(&Dictionary::asArray),
             10},
        Slot{"asDictionary", slotOf<Dictionary* (Dictionary::*)()>(&Dictionary::asDictionary), 11},
        Slot{"asDynamicDictionary",
             slotOf<DynamicDictionary* (Dictionary::*)()>(&Dictionary::asDynamicDictionary), 12},
        Slot{"asDynamicDictionaryConst",
             slotOf<const DynamicDictionary* (Dictionary::*)() const>(
                 &Dictionary::asDynamicDictionary),
             13},
        Slot{"asArray", slotOf<Array* (Dictionary::*)()>(&Dictionary::asArray), 14},
        Slot{"version", slotOf(&Dictionary::version), 15},
        Slot{"getNumOfData", slotOf(&Dictionary::getNumOfData), 16},
        Slot{"reservedDictionary0", slotOf(&Dictionary::reservedDictionary0), 17},
        Slot{"reservedDictionary1", slotOf(&Dictionary::reservedDictionary1), 18},
        Slot{"getDataName", slotOf(&Dictionary::getDataName), 19},
        Slot{"data", slotOf<Data* (Dictionary::*)(const std::string&)>(&Dictionary::data), 20},
        Slot{"dataConst",
             slotOf<const Data* (Dictionary::*)(const std::string&) const>(&Dictionary::data), 21}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    DynamicDictionary, SlotOrderTest,
    ::testing::Values(
        Slot{"getInformation", slotOf(&DynamicDictionary::getInformation), 2},
        Slot{"parentConst",
             slotOf<const Data* (DynamicDictionary::*)() const>(&DynamicDictionary::parent), 3},
        Slot{"parent", slotOf<Data* (DynamicDictionary::*)()>(&DynamicDictionary::parent), 4},
        Slot{"setParent", slotOf(&DynamicDictionary::setParent), 5},
        Slot{"isDictionary", slotOf(&DynamicDictionary::isDictionary), 6},
        Slot{"isDynamicDictionary", slotOf(&DynamicDictionary::isDynamicDictionary), 7},
        Slot{"isArray", slotOf(&DynamicDictionary::isArray), 8},
        Slot{"asDictionaryConst",
             slotOf<const Dictionary* (DynamicDictionary::*)() const>(
                 &DynamicDictionary::asDictionary),
             9},
        Slot{"asArrayConst",
             slotOf<const Array* (DynamicDictionary::*)() const>(&DynamicDictionary::asArray), 10},
        Slot{"asDictionary",
             slotOf<Dictionary* (DynamicDictionary::*)()>(&DynamicDictionary::asDictionary), 11},
        Slot{"asDynamicDictionary",
             slotOf<DynamicDictionary* (DynamicDictionary::*)()>(
                 &DynamicDictionary::asDynamicDictionary),
             12},
        Slot{"asDynamicDictionaryConst",
             slotOf<const DynamicDictionary* (DynamicDictionary::*)() const>(
                 &DynamicDictionary::asDynamicDictionary),
             13},
        Slot{"asArray", slotOf<Array* (DynamicDictionary::*)()>(&DynamicDictionary::asArray), 14},
        Slot{"version", slotOf(&DynamicDictionary::version), 15},
        Slot{"getNumOfData", slotOf(&DynamicDictionary::getNumOfData), 16},
        Slot{"reservedDictionary0", slotOf(&DynamicDictionary::reservedDictionary0), 17},
        Slot{"reservedDictionary1", slotOf(&DynamicDictionary::reservedDictionary1), 18},
        Slot{"getDataName", slotOf(&DynamicDictionary::getDataName), 19},
        Slot{"data",
             slotOf<Data* (DynamicDictionary::*)(const std::string&)>(&DynamicDictionary::data),
             20},
        Slot{"dataConst",
             slotOf<const Data* (DynamicDictionary::*)(const std::string&) const>(
                 &DynamicDictionary::data),
             21},
        Slot{"reservedDynamicDictionary0", slotOf(&DynamicDictionary::reservedDynamicDictionary0),
             22},
        Slot{"reservedDynamicDictionary1", slotOf(&DynamicDictionary::reservedDynamicDictionary1),
             23},
        Slot{"reservedDynamicDictionary2", slotOf(&DynamicDictionary::reservedDynamicDictionary2),
             24},
        Slot{"reservedDynamicDictionary3", slotOf(&DynamicDictionary::reservedDynamicDictionary3),
             25},
        Slot{"reservedDynamicDictionary4", slotOf(&DynamicDictionary::reservedDynamicDictionary4),
             26},
        Slot{"reservedDynamicDictionary5", slotOf(&DynamicDictionary::reservedDynamicDictionary5),
             27},
        Slot{"reservedDynamicDictionary6", slotOf(&DynamicDictionary::reservedDynamicDictionary6),
             28}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    Request, SlotOrderTest,
    ::testing::Values(Slot{"reservedRequest0", slotOf(&Request::reservedRequest0), 2},
                      Slot{"reservedRequest1", slotOf(&Request::reservedRequest1), 3},
                      Slot{"reservedRequest2", slotOf(&Request::reservedRequest2), 4},
                      Slot{"reservedRequest3", slotOf(&Request::reservedRequest3), 5}),
    operationOf);

// The destructor stands after the casts, in slots 7 and 8.
INSTANTIATE_TEST_SUITE_P(
    DataInfo, SlotOrderTest,
    ::testing::Values(Slot{"getName", slotOf(&DataInfo::getName), 0},
                      Slot{"getDescription", slotOf(&DataInfo::getDescription), 1},
                      Slot{"reservedDataInfo0", slotOf(&DataInfo::reservedDataInfo0), 2},
                      Slot{"isArrayInfo", slotOf(&DataInfo::isArrayInfo), 3},
                      Slot{"isDictionaryInfo", slotOf(&DataInfo::isDictionaryInfo), 4},
                      Slot{"asArrayInfo", slotOf(&DataInfo::asArrayInfo), 5},
                      Slot{"asDictionaryInfo", slotOf(&DataInfo::asDictionaryInfo), 6}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    ArrayInfo, SlotOrderTest,
    ::testing::Values(Slot{"getName", slotOf(&ArrayInfo::getName), 0},
                      Slot{"getDescription", slotOf(&ArrayInfo::getDescription), 1},
                      Slot{"reservedDataInfo0", slotOf(&ArrayInfo::reservedDataInfo0), 2},
                      Slot{"isArrayInfo", slotOf(&ArrayInfo::isArrayInfo), 3},
                      Slot{"isDictionaryInfo", slotOf(&ArrayInfo::isDictionaryInfo), 4},
                      Slot{"asArrayInfo", slotOf(&ArrayInfo::asArrayInfo), 5},
                      Slot{"asDictionaryInfo", slotOf(&ArrayInfo::asDictionaryInfo), 6},
                      Slot{"getElementType", slotOf(&ArrayInfo::getElementType), 9},
                      Slot{"reservedArrayInfo0", slotOf(&ArrayInfo::reservedArrayInfo0), 10},
                      Slot{"getAxisInfo", slotOf(&ArrayInfo::getAxisInfo), 11},
                      Slot{"reservedArrayInfo1", slotOf(&ArrayInfo::reservedArrayInfo1), 12},
                      Slot{"reservedArrayInfo2", slotOf(&ArrayInfo::reservedArrayInfo2), 13},
                      Slot{"reservedArrayInfo3", slotOf(&ArrayInfo::reservedArrayInfo3), 14}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    DictionaryInfo, SlotOrderTest,
    ::testing::Values(
        Slot{"getName", slotOf(&DictionaryInfo::getName), 0},
        Slot{"getDescription", slotOf(&DictionaryInfo::getDescription), 1},
        Slot{"reservedDataInfo0", slotOf(&DictionaryInfo::reservedDataInfo0), 2},
        Slot{"isArrayInfo", slotOf(&DictionaryInfo::isArrayInfo), 3},
        Slot{"isDictionaryInfo", slotOf(&DictionaryInfo::isDictionaryInfo), 4},
        Slot{"asArrayInfo", slotOf(&DictionaryInfo::asArrayInfo), 5},
        Slot{"asDictionaryInfo", slotOf(&DictionaryInfo::asDictionaryInfo), 6},
        Slot{"reservedDictionaryInfo0", slotOf(&DictionaryInfo::reservedDictionaryInfo0), 9},
        Slot{"reservedDictionaryInfo1", slotOf(&DictionaryInfo::reservedDictionaryInfo1), 10},
        Slot{"reservedDictionaryInfo2", slotOf(&DictionaryInfo::reservedDictionaryInfo2), 11},
        Slot{"reservedDictionaryInfo3", slotOf(&DictionaryInfo::reservedDictionaryInfo3), 12},
        Slot{"reservedDictionaryInfo4", slotOf(&DictionaryInfo::reservedDictionaryInfo4), 13}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(AxisInfo, SlotOrderTest,
                         ::testing::Values(Slot{"getAxisType", slotOf(&AxisInfo::getAxisType), 2},
                                           Slot{"getAxisName", slotOf(&AxisInfo::getAxisName), 3}),
                         operationOf);

// The end of each table, where derived classes go on. These rows alone move when an operation is
// appended on purpose; it has to be known then that everything derived is built anew.
INSTANTIATE_TEST_SUITE_P(
    NextFree, SlotOrderTest,
    ::testing::Values(
        Slot{"Exception", slotAfter<Exception>(), 1},
        Slot{"InvalidCall", slotAfter<InvalidCall>(), 1}, Slot{"Tuple", slotAfter<Tuple>(), 2},
        Slot{"TupleX", slotAfter<TupleX>(), 2}, Slot{"Data", slotAfter<Data>(), 16},
        Slot{"Array", slotAfter<Array>(), 28}, Slot{"Dictionary", slotAfter<Dictionary>(), 22},
        Slot{"DynamicDictionary", slotAfter<DynamicDictionary>(), 29},
        Slot{"Request", slotAfter<Request>(), 6}, Slot{"DataInfo", slotAfter<DataInfo>(), 9},
        Slot{"ArrayInfo", slotAfter<ArrayInfo>(), 15},
        Slot{"DictionaryInfo", slotAfter<DictionaryInfo>(), 14},
        Slot{"AxisInfo", slotAfter<AxisInfo>(), 4}, Slot{"BulkValues", slotAfter<BulkValues>(), 4}),
    operationOf);

}  // namespace
}  // namespace object_model
