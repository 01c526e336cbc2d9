#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>

#include "InvalidCallAt.h"

namespace object_model {
namespace {

[[noreturn]] void rejectCall(int line) { throwInvalidCallAt("ObjectModel/src/Array.cpp", line); }

}  // namespace

Array::~Array() = default;

bool Array::isDictionary() const { return false; }

bool Array::isDynamicDictionary() const { return false; }

bool Array::isArray() const { return true; }

const Dictionary* Array::asDictionary() const { return nullptr; }

const Array* Array::asArray() const { return this; }

Dictionary* Array::asDictionary() { return nullptr; }

DynamicDictionary* Array::asDynamicDictionary() { return nullptr; }

const DynamicDictionary* Array::asDynamicDictionary() const { return nullptr; }

Array* Array::asArray() { return this; }

double Array::getValueAsDouble(const Tuple& /*index*/) const { rejectCall(15); }

unsigned long Array::getValueAsUInt(const Tuple& /*index*/) const { rejectCall(18); }

long Array::getValueAsInt(const Tuple& /*index*/) const { rejectCall(21); }

std::string Array::getValueAsString(const Tuple& /*index*/) const { rejectCall(24); }

const Data* Array::getValueAsDictionary(const Tuple& /*index*/) const { rejectCall(29); }

bool Array::getValueAsBoolean(const Tuple& /*index*/) const { rejectCall(34); }

std::complex<double> Array::getValueAsComplex(const Tuple& /*index*/) const { rejectCall(37); }

ElementType Array::getElementType() const {
  return static_cast<const ArrayInfo*>(getInformation())->getElementType();
}

}  // namespace object_model
