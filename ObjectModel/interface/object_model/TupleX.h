/// @file
/// The tuple that owns its values.
#pragma once

#include <object_model/Export.h>
#include <object_model/Tuple.h>

#include <initializer_list>
#include <memory>
#include <vector>

namespace object_model {

/// A tuple that owns its values, for a caller that needs a position to step through an array or a
/// copy of a shape.
///
/// Ownership: two of them never share values. References obtained from operator[] stay valid until
/// the next resize() or assignment.
/// Threads: const operations may run concurrently.
/// Errors: running out of memory raises `std::bad_alloc` (a count that no vector can hold raises
/// `std::length_error`), and the tuple stays as it was.
/// ABI: the destructor is the only virtual; one field follows those of `Tuple`.
class OBJECT_MODEL_EXPORT TupleX : public Tuple {
 public:
  /// `count` values, all 0.
  explicit TupleX(unsigned long count);

  /// A copy of the `count` values from `values` on, which is not read when `count` is 0.
  TupleX(const unsigned long* values, unsigned long count);

  /// The values of `list`, in order.
  TupleX(const std::initializer_list<unsigned long>& list);

  /// An independent copy of the values of `other`.
  TupleX(const TupleX& other);

  ~TupleX() override;  // slots 0 and 1

  /// Takes the values of `other`; assigning a tuple to itself changes nothing.
  ///
  /// After taking an empty tuple, a resize() that grows finds the values from before the assignment
  /// again, as far as there were any: the storage is kept, only the view of it is emptied.
  TupleX& operator=(const TupleX& other);

  /// Takes the values of any view, as the other assignment does. The view may show this tuple's own
  /// values.
  TupleX& operator=(const Tuple& other);

  /// Makes the tuple `count` values long: values that stay are kept, new ones are 0.
  void resize(unsigned long count);

 private:
  std::unique_ptr<std::vector<unsigned long>> m_storage;
};

}  // namespace object_model
