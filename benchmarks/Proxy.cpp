#include <memory>
#include <utility>

#include "Case.h"
#include "IO/ArrayProxy.h"
#include "Position.h"
#include "UncheckedArray.h"

namespace benchmarks {
namespace {

using object_model::Array;
using object_model::ArrayProxy;
using quillon::memory::Axis;

std::vector<double> fewValues() {
  std::vector<double> values(4096);
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = static_cast<double>(k % 1000);  // sums are exact
  }
  return values;
}

std::vector<Axis> axes(std::size_t dimensions, unsigned long extent) {
  std::vector<Axis> result;
  for (std::size_t k = 0; k < dimensions; ++k) {
    result.emplace_back("axis" + std::to_string(k), k == 0 ? extent : 1);
  }
  return result;
}

/// Accesses along dimension 0 of an array of `N` dimensions, which is the proxy's last.
template <std::size_t N>
class ProxyAccesses final : public Operation {
 public:
  explicit ProxyAccesses(unsigned long count)
      : m_count(count), m_wrapped("wrapped", axes(N, count), fewValues()) {
    std::vector<unsigned long> axisMap;
    std::vector<unsigned long> extents;
    for (std::size_t m = 0; m < N; ++m) {
      axisMap.push_back(N - 1 - m);
      extents.push_back(m == N - 1 ? count : 1);
    }
    m_proxy = std::make_unique<ArrayProxy>(extents.data(), N, axisMap, &m_wrapped);
  }

  void runLibrary() override { m_byLibrary = sumThroughProxy(*m_proxy); }
  void runFloor() override { m_byHand = sumByHand(m_wrapped); }

  void check() override {
    runLibrary();
    runFloor();
    require(m_byHand > 0 || m_count == 1, "the sum by hand is " + std::to_string(m_byHand));
    require(m_byLibrary == m_byHand, "an access through ArrayProxy gives another value");
  }

 private:
  // Both see the array as the interface alone, as the library does.
  [[gnu::noinline]] double sumThroughProxy(const Array& proxy) const {
    double sum = 0;
    Position index(N);
    for (unsigned long k = 0; k < m_count; ++k) {
      index.set(N - 1, k);
      sum += proxy.getValueAsDouble(index);
    }
    return sum;
  }

  [[gnu::noinline]] double sumByHand(const Array& array) const {
    double sum = 0;
    Position index(N);
    for (unsigned long k = 0; k < m_count; ++k) {
      index.set(N - 1, k);
      sum += access(array, index);
    }
    return sum;
  }

  // What a proxy for just these axes would do.
  [[gnu::noinline]] static double access(const Array& array, const Position& index) {
    Position position(N);
    for (std::size_t m = 0; m < N; ++m) {
      position.set(N - 1 - m, index[m]);
    }
    return array.getValueAsDouble(position);
  }

  unsigned long m_count;
  UncheckedArray<double> m_wrapped;
  std::unique_ptr<ArrayProxy> m_proxy;
  double m_byLibrary = 0;
  double m_byHand = 0;
};

}  // namespace

void addProxyCases(Cases& cases) {
  constexpr unsigned long ACCESSES = 1000;
  const auto add = [&](const std::string& what, const std::string& shape, auto make) {
    cases.push_back({"ArrayProxy/" + what, shape, ACCESSES, 1.3, make});
  };
  add("1-dimension", "tall",
      [](unsigned long size) { return std::make_unique<ProxyAccesses<1>>(size); });
  add("2-dimensions", "tall",
      [](unsigned long size) { return std::make_unique<ProxyAccesses<2>>(size); });
  add("3-dimensions", "tall",
      [](unsigned long size) { return std::make_unique<ProxyAccesses<3>>(size); });
}

}  // namespace benchmarks
