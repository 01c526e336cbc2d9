#include <object_model/ComparisonHelper.h>

#include <cmath>
#include <type_traits>
#include <utility>

#include "Case.h"
#include "Opaque.h"
#include "Position.h"
#include "UncheckedArray.h"

namespace benchmarks {
namespace {

using object_model::Array;
using object_model::helper::areSameArrays;
using object_model::helper::ComparisonType;
using quillon::memory::Axis;
using Complex = std::complex<double>;

/// Below every delta, absolute and relative, of the values that differ.
constexpr double TOLERANCE = 1e-5;

// The rules, written anew for numbers of one type.

struct Exact {
  static constexpr ComparisonType TYPE = ComparisonType::Exact;
  static std::string remark() { return ""; }
  template <class T>
  static bool same(const T& a, const T& b) {
    return a == b;
  }
};

template <class T>
double asNumber(T value) {
  return static_cast<double>(value);
}
Complex asNumber(const Complex& value) { return value; }

struct Absolute {
  static constexpr ComparisonType TYPE = ComparisonType::Absolute;
  static std::string remark() { return " The absolute delta is greater than 0.000010"; }
  template <class T>
  static bool same(const T& a, const T& b) {
    return a == b || std::abs(asNumber(a) - asNumber(b)) <= TOLERANCE;
  }
};

double referenceOf(double number) { return number; }
double referenceOf(const Complex& number) { return std::abs(number); }

struct Relative {
  static constexpr ComparisonType TYPE = ComparisonType::Relative;
  static std::string remark() { return " The relative delta is greater than 0.000010"; }
  template <class T>
  static bool same(const T& a, const T& b) {
    if (a == b) {
      return true;
    }
    const auto x = asNumber(a);
    const auto y = asNumber(b);
    const double delta = std::abs(x - y);
    if (std::abs(y) > 1e-9) {
      return delta / referenceOf(y) <= TOLERANCE;
    }
    return (std::abs(x) > 1e-9 ? delta / referenceOf(x) : delta) <= TOLERANCE;
  }
};

template <class T>
T valueOf(std::size_t number) {
  return static_cast<T>(number);
}
template <>
Complex valueOf<Complex>(std::size_t number) {
  return {static_cast<double>(number), 0.5};
}
template <>
std::string valueOf<std::string>(std::size_t number) {
  return "cell " + std::to_string(number);
}

template <class T>
std::string textOf(const T& value) {
  return std::to_string(value);
}
std::string textOf(const Complex& value) {
  return "(" + std::to_string(value.real()) + ";" + std::to_string(value.imag()) + ")";
}
std::string textOf(const std::string& value) { return value; }

enum class Content { EQUAL, HALF_DIFFERENT };

/// The values of the second array: the first one's, but for every second one if they differ.
template <class T>
std::vector<T> fewValues(Content content) {
  std::vector<T> values(4096);
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = valueOf<T>(content == Content::HALF_DIFFERENT && k % 2 == 1 ? k + 1 : k);
  }
  return values;
}

std::vector<Axis> axesOf(const std::vector<unsigned long>& shape) {
  std::vector<Axis> axes;
  axes.reserve(shape.size());
  for (const unsigned long extent : shape) {
    axes.emplace_back("axis" + std::to_string(axes.size()), extent);
  }
  return axes;
}

/// Two arrays under one rule. Where they differ, their last elements do.
template <class T, class Rule>
class ArrayComparison final : public Operation {
 public:
  ArrayComparison(const std::vector<unsigned long>& shape, Content content)
      : m_content(content),
        m_first("array", axesOf(shape), fewValues<T>(Content::EQUAL)),
        m_second("array", axesOf(shape), fewValues<T>(content)) {
    for (const unsigned long extent : shape) {
      m_dimensions.push_back({m_dimensions.size(), extent});
    }
  }

  void runLibrary() override {
    m_byLibrary = areSameArrays(m_first, m_second, Rule::TYPE, TOLERANCE, &m_message);
  }

  void runFloor() override {
    m_byHand = areSameByHand(opaque<const Array>(m_first), opaque<const Array>(m_second));
  }

  void check() override {
    const bool same = m_content == Content::EQUAL;
    m_message = "untouched";
    runLibrary();
    runFloor();
    require(m_byHand == same, "the comparison by hand");
    require(m_byLibrary == same && m_message == (same ? "untouched" : lastDifference()),
            "areSameArrays(), whose message is: " + m_message);
  }

 private:
  [[gnu::noinline]] bool areSameByHand(const Array& first, const Array& second) const {
    bool same = true;
    Position position(m_dimensions.size());
    walk(m_dimensions, position, [&] {
      const T a = read<T>(first, position);
      const T b = read<T>(second, position);
      if (!Rule::same(a, b)) {
        same = false;
      }
    });
    return same;
  }

  std::string lastDifference() const {
    Position last(m_dimensions.size());
    std::string position;
    for (const Walked& walked : m_dimensions) {
      last.set(walked.dimension, walked.extent - 1);
      position += (position.empty() ? "(" : ";") + std::to_string(walked.extent - 1);
    }
    return "The arrays 'array' have different values at the position " + position + ")': '" +
           textOf(read<T>(m_first, last)) + "' and '" + textOf(read<T>(m_second, last)) + "'." +
           Rule::remark();
  }

  Content m_content;
  UncheckedArray<T> m_first;
  UncheckedArray<T> m_second;
  std::vector<Walked> m_dimensions;
  std::string m_message;
  bool m_byLibrary = false;
  bool m_byHand = false;
};

template <class T, class Rule>
void addEqualAndDifferent(Cases& cases, const std::string& what) {
  constexpr unsigned long SIZE = 10'000'000;
  const auto make = [](Content content) {
    return [=](unsigned long size) {
      return std::make_unique<ArrayComparison<T, Rule>>(std::vector<unsigned long>{size}, content);
    };
  };
  cases.push_back({"areSameArrays/" + what + "/equal", "tall", SIZE, 1.15, make(Content::EQUAL)});
  cases.back().growth = std::is_same_v<T, double> && std::is_same_v<Rule, Exact>;
  cases.push_back({"areSameArrays/" + what + "/half-different", "tall", SIZE, 1.5,
                   make(Content::HALF_DIFFERENT)});
}

template <class T>
void addAllRules(Cases& cases, const std::string& type) {
  addEqualAndDifferent<T, Exact>(cases, type + "/Exact");
  addEqualAndDifferent<T, Absolute>(cases, type + "/Absolute");
  addEqualAndDifferent<T, Relative>(cases, type + "/Relative");
}

template <class Shape>
void addShape(Cases& cases, const std::string& shapeName, unsigned long size, Shape shape) {
  cases.push_back(
      {"areSameArrays/Double/Exact/equal", shapeName, size, 1.15, [=](unsigned long someSize) {
         return std::make_unique<ArrayComparison<double, Exact>>(shape(someSize), Content::EQUAL);
       }});
}

}  // namespace

void addComparisonCases(Cases& cases) {
  using Shape = std::vector<unsigned long>;
  addAllRules<unsigned long>(cases, "UInt");
  addAllRules<long>(cases, "Int");
  addAllRules<double>(cases, "Double");
  addAllRules<Complex>(cases, "Complex");
  addEqualAndDifferent<std::string, Exact>(cases, "String/Exact");
  addShape(cases, "tiny", 12, [](unsigned long size) { return Shape{size / 3, 3}; });
  addShape(cases, "wide", 10'000'000, [](unsigned long size) { return Shape{10, size / 10}; });
  addShape(cases, "deep", 10'000'000, [](unsigned long size) {
    return Shape{10, 10, 10, size / 1000};
  });
}

}  // namespace benchmarks
