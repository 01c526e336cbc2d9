#include <object_model/ArrayInfo.h>

#include "InvalidCallAt.h"

namespace object_model {

bool ArrayInfo::isArrayInfo() const { return true; }

bool ArrayInfo::isDictionaryInfo() const { return false; }

const ArrayInfo* ArrayInfo::asArrayInfo() const { return this; }

const DictionaryInfo* ArrayInfo::asDictionaryInfo() const {
  throwInvalidCallAt("ObjectModel/src/ArrayInfo.cpp", 32);
}

ArrayInfo::~ArrayInfo() = default;

}  // namespace object_model
