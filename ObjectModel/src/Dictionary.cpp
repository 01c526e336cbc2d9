#include <object_model/Dictionary.h>

namespace object_model {

Dictionary::~Dictionary() = default;

bool Dictionary::isDictionary() const { return true; }

bool Dictionary::isArray() const { return false; }

const Dictionary* Dictionary::asDictionary() const { return this; }

const Array* Dictionary::asArray() const { return nullptr; }

Dictionary* Dictionary::asDictionary() { return this; }

Array* Dictionary::asArray() { return nullptr; }

Data* Dictionary::data(int index) { return data(getDataName(index)); }

const Data* Dictionary::data(int index) const { return data(getDataName(index)); }

}  // namespace object_model
