#include "ObjectModel/ComparisonHelper/PlainComparison.h"

#include <object_model/Array.h>
#include <object_model/Dictionary.h>
#include <object_model/InvalidCall.h>
#include <object_model/TupleX.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <vector>

namespace quillon::test::plain {
namespace {

using object_model::Array;
using object_model::Data;
using object_model::Dictionary;
using object_model::ElementType;
using object_model::Tuple;
using object_model::TupleX;
using object_model::helper::ComparisonType;
using std::to_string;

std::string fixed(double value) {
  std::vector<char> text(512);
  const int length = std::snprintf(text.data(), text.size(), "%f", value);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

std::string show(const std::complex<double>& value) {
  return "(" + fixed(value.real()) + ";" + fixed(value.imag()) + ")";
}

std::string show(const Tuple& position) {
  std::string text;
  for (unsigned long i = 0; i < position.size(); ++i) {
    text += (i == 0 ? "" : ";") + to_string(position[i]);
  }
  return "(" + (position.size() == 0 ? "empty" : text) + ")";
}

[[noreturn]] void rejectAtLine(const char* line) {
  throw object_model::InvalidCall("Invalid call at ObjectModel/src/ComparisonHelper.cpp (" +
                                  std::string(line) + ")");
}

bool sameUnsigned(unsigned long a, unsigned long b, ComparisonType type, double t) {
  const auto x = static_cast<double>(a);
  const auto y = static_cast<double>(b);
  double d = std::fabs(x - y);
  switch (static_cast<int>(type)) {
    case 0:
      return a == b;
    case 1:
      return a == b || t >= d;
    case 2:
      d = y > 1e-9 ? d / y : x > 1e-9 ? d / x : d;
      return a == b || t >= d;
    default:
      rejectAtLine("372");
  }
}

bool sameSigned(long a, long b, ComparisonType type, double t) {
  const auto x = static_cast<double>(a);
  const auto y = static_cast<double>(b);
  double d = std::fabs(x - y);
  switch (static_cast<int>(type)) {
    case 0:
      return a == b;
    case 1:
      return a == b || t >= d;
    case 2:
      d = std::fabs(y) > 1e-9 ? d / y : std::fabs(x) > 1e-9 ? d / x : d;
      return a == b || t >= d;
    default:
      rejectAtLine("382");
  }
}

bool sameDouble(double a, double b, ComparisonType type, double t) {
  double d = std::fabs(a - b);
  switch (static_cast<int>(type)) {
    case 0:
      return a == b;
    case 1:
      return a == b || t >= d;
    case 2:
      d = std::fabs(b) > 1e-9 ? d / b : std::fabs(a) > 1e-9 ? d / a : d;
      return a == b || t >= d;
    default:
      rejectAtLine("392");
  }
}

bool sameComplex(const std::complex<double>& a, const std::complex<double>& b, ComparisonType type,
                 double t) {
  const bool equal = a.real() == b.real() && a.imag() == b.imag();
  double d = std::abs(std::complex<double>(a.real() - b.real(), a.imag() - b.imag()));
  switch (static_cast<int>(type)) {
    case 0:
      return equal;
    case 1:
      return equal || t >= d;
    case 2:
      d = std::abs(b) > 1e-9 ? d / std::abs(b) : std::abs(a) > 1e-9 ? d / std::abs(a) : d;
      return equal || t >= d;
    default:
      rejectAtLine("402");
  }
}

std::string remark(ComparisonType type, double t) {
  if (type == ComparisonType::Absolute) {
    return " The absolute delta is greater than " + fixed(t);
  }
  if (type == ComparisonType::Relative) {
    return " The relative delta is greater than " + fixed(t);
  }
  return "";
}

std::string values(const std::string& name, const Tuple& position, const std::string& a,
                   const std::string& b) {
  return "The arrays '" + name + "' have different values at the position " + show(position) +
         "': '" + a + "' and '" + b + "'.";
}

bool comparePosition(const Array& first, const Array& second, const std::string& name,
                     ElementType elementType, const Tuple& at, ComparisonType type, double t,
                     std::string& nested, std::string* message) {
  std::string sentence;
  bool same = false;
  switch (static_cast<int>(elementType)) {
    case 0: {
      const unsigned long a = first.getValueAsUInt(at);
      const unsigned long b = second.getValueAsUInt(at);
      same = sameUnsigned(a, b, type, t);
      sentence = values(name, at, to_string(a), to_string(b)) + remark(type, t);
      break;
    }
    case 1: {
      const long a = first.getValueAsInt(at);
      const long b = second.getValueAsInt(at);
      same = sameSigned(a, b, type, t);
      sentence = values(name, at, to_string(a), to_string(b)) + remark(type, t);
      break;
    }
    case 2: {
      const double a = first.getValueAsDouble(at);
      const double b = second.getValueAsDouble(at);
      same = sameDouble(a, b, type, t);
      sentence = values(name, at, fixed(a), fixed(b)) + remark(type, t);
      break;
    }
    case 3: {
      const std::complex<double> a = first.getValueAsComplex(at);
      const std::complex<double> b = second.getValueAsComplex(at);
      same = sameComplex(a, b, type, t);
      sentence = values(name, at, show(a), show(b)) + remark(type, t);
      break;
    }
    case 4: {
      const std::string a = first.getValueAsString(at);
      const std::string b = second.getValueAsString(at);
      same = a == b;
      sentence = values(name, at, a, b);
      break;
    }
    case 5: {
      const bool a = first.getValueAsBoolean(at);
      const bool b = second.getValueAsBoolean(at);
      same = a == b;
      sentence = values(name, at, a ? "1" : "0", b ? "1" : "0");
      break;
    }
    case 6: {
      const Data* b = second.getValueAsDictionary(at);
      const Data* a = first.getValueAsDictionary(at);
      same = plain::areSameDictionaries(dynamic_cast<const Dictionary&>(*a),
                                        dynamic_cast<const Dictionary&>(*b), type, t,
                                        message != nullptr ? &nested : nullptr);
      sentence = "The arrays '" + name + "' have different dictionaries at the position " +
                 show(at) + "':" + nested;
      break;
    }
    default:
      rejectAtLine("412");
  }
  if (!same && message != nullptr) {
    *message = sentence;
  }
  return same;
}

}  // namespace

bool areSameArrays(const Array& first, const Array& second, ComparisonType type, double tolerance,
                   std::string* message) {
  std::string unwanted;
  std::string& report = message != nullptr ? *message : unwanted;
  const std::string name = first.getName();
  const std::string secondName = second.getName();
  if (name != secondName) {
    report = "The arrays have different names: '" + name + "' and '" + secondName + "'.";
    return false;
  }
  const ElementType elementType = first.getElementType();
  const ElementType secondType = second.getElementType();
  if (elementType != secondType) {
    report = "The arrays '" + name + "' have different element type: '" +
             to_string(static_cast<int>(elementType)) + "' and '" +
             to_string(static_cast<int>(secondType)) + "'.";
    return false;
  }
  const TupleX shape = [&] {
    TupleX copy(0);
    copy = first.size();
    return copy;
  }();
  const Tuple& secondShape = second.size();
  const unsigned long n = shape.size();
  if (n != secondShape.size()) {
    report = "The arrays '" + name + "' have different dimensions: '" + to_string(n) + "' and '" +
             to_string(secondShape.size()) + "'.";
    return false;
  }
  for (unsigned long d = 0; d < n; ++d) {
    if (shape[d] != secondShape[d]) {
      report = "The arrays '" + name + "' have different sizes for the dimension : '" +
               to_string(d) + "': '" + to_string(shape[d]) + "' and '" + to_string(secondShape[d]) +
               "'.";
      return false;
    }
  }

  bool same = true;
  std::string nested;
  TupleX position(n);
  const auto bound = [&](unsigned long k) { return k < n ? shape[k] : 1; };
  for (unsigned long i3 = 0; i3 < bound(3); ++i3) {
    if (n == 4) {
      position[3] = i3;
    }
    for (unsigned long i2 = 0; i2 < bound(2); ++i2) {
      if (n > 2) {
        position[2] = i2;
      }
      for (unsigned long i1 = 0; i1 < bound(1); ++i1) {
        if (n > 1) {
          position[1] = i1;
        }
        for (unsigned long i0 = 0; i0 < bound(0); ++i0) {
          if (n > 0) {
            position[0] = i0;
          }
          if (!comparePosition(first, second, name, elementType, position, type, tolerance, nested,
                               message)) {
            same = false;
          }
        }
      }
    }
  }
  return same;
}

bool areSimilarDictionaries(const Dictionary& first, const Dictionary& second,
                            std::string* message) {
  std::string unwanted;
  std::string& report = message != nullptr ? *message : unwanted;
  const std::string name = first.getName();
  const std::string secondName = second.getName();
  if (name != secondName) {
    report = "The dictionaries have different names: '" + name + "' and '" + secondName + "'.";
    return false;
  }
  const unsigned long count = first.getNumOfData();
  const unsigned long secondCount = second.getNumOfData();
  if (count != secondCount) {
    report = "The dictionaries '" + name + "' have different sizes: '" + to_string(count) +
             "' and '" + to_string(secondCount) + "'.";
    return false;
  }
  for (int i = 0; i < static_cast<int>(count); ++i) {
    const Data* entry = first.data(i);
    const std::string entryName = entry->getName();
    const Data* match = nullptr;
    try {
      match = second.data(entryName);
    } catch (...) {
      report = "The dictionary '" + secondName + "'  doesn't have a '" + entryName + "' entry.";
      return false;
    }
    const std::string kind = entry->isDictionary() ? "a dictionary" : "an array";
    const std::string matchKind = match->isDictionary() ? "a dictionary" : "an array";
    if (kind != matchKind) {
      report = "The dictionaries don't have the same type: '" + name + "' is " + kind + " and '" +
               secondName + "' is " + matchKind + ".";
      return false;
    }
  }
  return true;
}

bool areSameDictionaries(const Dictionary& first, const Dictionary& second, ComparisonType type,
                         double tolerance, std::string* message) {
  if (!plain::areSimilarDictionaries(first, second, message)) {
    return false;
  }
  const int count = static_cast<int>(first.getNumOfData());
  for (int i = 0; i < count; ++i) {
    std::string nested;
    const Data* entry = first.data(i);
    const std::string entryName = entry->getName();
    const Data* match = second.data(entryName);
    if (entry->isDictionary()) {
      if (!plain::areSameDictionaries(dynamic_cast<const Dictionary&>(*entry),
                                      dynamic_cast<const Dictionary&>(*match), type, tolerance,
                                      &nested)) {
        if (message != nullptr) {
          *message = "Dictionary '" + first.getName() + "': " + nested;
        }
        return false;
      }
    } else if (!plain::areSameArrays(dynamic_cast<const Array&>(*entry),
                                     dynamic_cast<const Array&>(*match), type, tolerance,
                                     &nested)) {
      if (message != nullptr) {
        *message = "Array '" + entryName + "': " + nested;
      }
      return false;
    }
  }
  return true;
}

}  // namespace quillon::test::plain
