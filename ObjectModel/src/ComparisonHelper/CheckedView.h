#pragma once

#include <object_model/Data.h>

#include <typeinfo>

namespace object_model::helper {

/// `data` as a `Kind`, such as `Array`. @throws std::bad_cast when it is none, and for null.
template <class Kind>
const Kind& viewAs(const Data* data) {
  const auto* view = dynamic_cast<const Kind*>(data);
  if (view == nullptr) {
    throw std::bad_cast();
  }
  return *view;
}

/// viewAs() for many objects, mostly of one class: only the first of them is searched for a `Kind`.
///
/// isArray() and the like, which tell the same, are calls that the objects would see.
template <class Kind>
class CheckedView {
 public:
  const Kind& of(const Data* data) {
    if (data == nullptr || !isStart(data) || &typeid(*data) != m_class) {
      return search(data);
    }
    return static_cast<const Kind&>(*data);
  }

 private:
  const Kind& search(const Data* data) {
    const auto& view = viewAs<Kind>(data);
    // An object may consist of several `Data`. The one at its start is the same in all of a class.
    m_class = isStart(data) && &view == data ? &typeid(*data) : nullptr;
    return view;
  }

  static bool isStart(const Data* data) { return dynamic_cast<const void*>(data) == data; }

  const std::type_info* m_class = nullptr;  // whose objects start with a `Kind`
};

}  // namespace object_model::helper
