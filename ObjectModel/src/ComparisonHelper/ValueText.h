#pragma once

#include <complex>
#include <string>

namespace object_model {
class Tuple;
}

namespace object_model::helper {

/// A position or shape as reports show it: "(3;0;12)", or "(empty)" without values.
std::string tupleToString(const Tuple& tuple);

/// A complex number as reports show it: "(1.000000;-2.500000)".
std::string complexToString(const std::complex<double>& value);

}  // namespace object_model::helper
