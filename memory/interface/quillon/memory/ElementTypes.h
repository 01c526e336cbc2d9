/// @file
/// The one table of element types and of the types in which their values are stored: which C++ type
/// stands for which enumerator, what it is called and which accessor reads it.
#pragma once

#include <object_model/Array.h>
#include <object_model/BulkValues.h>
#include <object_model/ElementType.h>

#include <complex>
#include <string>
#include <type_traits>
#include <utility>

namespace quillon::memory {

class Dictionary;

/// False for every type, but not before the type is known.
template <class T>
inline constexpr bool IS_KNOWN_TYPE = false;

/// What is known of the element type whose values are of the C++ type `T`, one of `unsigned long`,
/// `long`, `double`, `std::complex<double>`, `std::string`, `bool` and `Dictionary`:
/// `TYPE`, the enumerator; `NAME`, as the enumeration spells it; `READ`, the accessor; `Result`,
/// what the accessor returns; `Accessor<Base>`, a class derived from an array class `Base` whose
/// accessor of this type asks `valueAt(index)`.
template <class T>
struct ElementTraits {
  static_assert(IS_KNOWN_TYPE<T>,
                "Elements of arrays are of one of these types: unsigned long, long, double, "
                "std::complex<double>, std::string, bool, quillon::memory::Dictionary; numbers may "
                "be stored as signed char, short, int, unsigned char, unsigned short, unsigned "
                "int, float or std::complex<float>, too.");
};

/// What is known of a stored type, as which values of the C++ type `T` are kept: `TYPE`, the
/// enumerator; `NAME`, a name with its size in bits; `Element`, the C++ type of the element type
/// that it is widened to.
template <class T>
struct StoredTraits;

// The rows of the table, which `ElementTraits` and `StoredTraits` describe.
/// @cond

#define QUILLON_ELEMENT_TYPE(T, ENUMERATOR, ACCESSOR)                                        \
  template <>                                                                                \
  struct ElementTraits<T> {                                                                  \
    static constexpr object_model::ElementType TYPE = object_model::ElementType::ENUMERATOR; \
    static constexpr const char* NAME = #ENUMERATOR;                                         \
    static constexpr auto READ = &object_model::Array::ACCESSOR;                             \
    using Result = decltype(std::declval<const object_model::Array&>().ACCESSOR(             \
        std::declval<const object_model::Tuple&>()));                                        \
    template <class Base>                                                                    \
    class Accessor : public Base {                                                           \
     public:                                                                                 \
      Result ACCESSOR(const object_model::Tuple& index) const override {                     \
        return this->valueAt(index);                                                         \
      }                                                                                      \
                                                                                             \
     protected:                                                                              \
      using Base::Base;                                                                      \
    };                                                                                       \
  }

QUILLON_ELEMENT_TYPE(unsigned long, UInt, getValueAsUInt);
QUILLON_ELEMENT_TYPE(long, Int, getValueAsInt);
QUILLON_ELEMENT_TYPE(double, Double, getValueAsDouble);
QUILLON_ELEMENT_TYPE(std::complex<double>, Complex, getValueAsComplex);
QUILLON_ELEMENT_TYPE(std::string, String, getValueAsString);
QUILLON_ELEMENT_TYPE(bool, Boolean, getValueAsBoolean);
QUILLON_ELEMENT_TYPE(Dictionary, Dictionary, getValueAsDictionary);

#undef QUILLON_ELEMENT_TYPE

#define QUILLON_STORED_TYPE(T, ENUMERATOR, ELEMENT, TEXT)                                  \
  template <>                                                                              \
  struct StoredTraits<T> {                                                                 \
    static constexpr object_model::StoredType TYPE = object_model::StoredType::ENUMERATOR; \
    static constexpr const char* NAME = TEXT;                                              \
    using Element = ELEMENT;                                                               \
  }

QUILLON_STORED_TYPE(signed char, Int8, long, "int8");
QUILLON_STORED_TYPE(short, Int16, long, "int16");
QUILLON_STORED_TYPE(int, Int32, long, "int32");
QUILLON_STORED_TYPE(long, Int64, long, "int64");
QUILLON_STORED_TYPE(unsigned char, UInt8, unsigned long, "uint8");
QUILLON_STORED_TYPE(unsigned short, UInt16, unsigned long, "uint16");
QUILLON_STORED_TYPE(unsigned int, UInt32, unsigned long, "uint32");
QUILLON_STORED_TYPE(unsigned long, UInt64, unsigned long, "uint64");
QUILLON_STORED_TYPE(float, Float32, double, "float32");
QUILLON_STORED_TYPE(double, Float64, double, "float64");
QUILLON_STORED_TYPE(std::complex<float>, Complex64, std::complex<double>, "complex64");
QUILLON_STORED_TYPE(std::complex<double>, Complex128, std::complex<double>, "complex128");
QUILLON_STORED_TYPE(bool, Boolean, bool, "bool");

#undef QUILLON_STORED_TYPE

/// @endcond

/// A C++ type as a value, for the visits below. A visit has it back as the `Type` in
/// `decltype(tag)`.
template <class T>
struct TypeTag {
  using Type = T;  ///< the type itself
};

/// A list of C++ types.
template <class... T>
struct TypeList {};

/// Every type that `ElementTraits` knows, in the order of the enumeration.
using ElementTypes =
    TypeList<unsigned long, long, double, std::complex<double>, std::string, bool, Dictionary>;

/// Every type that `StoredTraits` knows, in the order of the enumeration.
using StoredTypes =
    TypeList<signed char, short, int, long, unsigned char, unsigned short, unsigned int,
             unsigned long, float, double, std::complex<float>, std::complex<double>, bool>;

// What the names below are made from.
/// @cond
template <class T, class List>
struct IsListed;
template <class T, class... Listed>
struct IsListed<T, TypeList<Listed...>> : std::disjunction<std::is_same<T, Listed>...> {};
/// @endcond

/// Whether `T` is one of the types in which values are stored in bulk.
template <class T>
inline constexpr bool IS_STORED_TYPE = IsListed<T, StoredTypes>::value;

/// Whether `T` stands for an element type.
template <class T>
inline constexpr bool IS_ELEMENT_TYPE = IsListed<T, ElementTypes>::value;

// What `ElementOf` is made from.
/// @cond
template <class T, class = void>
struct ElementOfType {
  using Type = T;
};
template <class T>
struct ElementOfType<T, std::enable_if_t<IS_STORED_TYPE<T>>> {
  using Type = typename StoredTraits<T>::Element;
};
/// @endcond

/// The C++ type of the element type that a value of the type `T` belongs to: `double` for `float`
/// and `double`, `std::string` for itself.
template <class T>
using ElementOf = typename ElementOfType<T>::Type;

/// What the accessor of the element type that `T` belongs to returns: `double` for `float` and
/// `double`, a pointer for `Dictionary`.
template <class T>
using ResultOf = typename ElementTraits<ElementOf<T>>::Result;

/// Calls `visit(TypeTag<T>())` with the C++ type of `type`.
/// @return false, without a call, for a value outside the enumeration.
template <class Visit, class... T>
bool visitType(object_model::ElementType type, Visit&& visit, TypeList<T...> /*types*/) {
  return ((type == ElementTraits<T>::TYPE && (visit(TypeTag<T>()), true)) || ...);
}

/// @copydoc visitType
template <class Visit, class... T>
bool visitType(object_model::StoredType type, Visit&& visit, TypeList<T...> /*types*/) {
  return ((type == StoredTraits<T>::TYPE && (visit(TypeTag<T>()), true)) || ...);
}

/// @copydoc visitType
template <class Visit>
bool visitElementType(object_model::ElementType type, Visit&& visit) {
  return visitType(type, std::forward<Visit>(visit), ElementTypes());
}

/// @copydoc visitType
template <class Visit>
bool visitStoredType(object_model::StoredType type, Visit&& visit) {
  return visitType(type, std::forward<Visit>(visit), StoredTypes());
}

/// The element type's name as the enumeration spells it, such as "Double"; "element type 9" for a
/// value outside the enumeration, which an array class of the caller's may claim.
[[nodiscard]] std::string nameOf(object_model::ElementType type);

/// The stored type's name, such as "float32"; "stored type 99" for a value outside the enumeration.
[[nodiscard]] std::string nameOf(object_model::StoredType type);

/// The bytes that one value takes; 0 for a value outside the enumeration.
[[nodiscard]] unsigned long bytesOf(object_model::StoredType type);

/// The array as `BulkValues` where it offers them in a type that belongs to its element type; null
/// otherwise, so that it is read by its accessors.
[[nodiscard]] const object_model::BulkValues* bulkValuesOf(const object_model::Array& array);

}  // namespace quillon::memory
