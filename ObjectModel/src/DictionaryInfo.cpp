#include <object_model/DictionaryInfo.h>

#include "InvalidCallAt.h"

namespace object_model {

bool DictionaryInfo::isArrayInfo() const { return false; }

bool DictionaryInfo::isDictionaryInfo() const { return true; }

const ArrayInfo* DictionaryInfo::asArrayInfo() const {
  throwInvalidCallAt("ObjectModel/src/DictionaryInfo.cpp", 25);
}

const DictionaryInfo* DictionaryInfo::asDictionaryInfo() const { return this; }

DictionaryInfo::~DictionaryInfo() = default;

}  // namespace object_model
