#pragma once

#include <object_model/InvalidCall.h>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace test {

/// What a call fails with.
enum class Failure { StandardException, InvalidCall, Number };

/// The standard exception of a call that fails. It knows whether it is still the object that was
/// thrown.
class CallFailed : public std::runtime_error {
 public:
  explicit CallFailed(const std::string& call)
      : std::runtime_error("failed at " + call), m_thrown(this) {}
  CallFailed(const CallFailed& other) : std::runtime_error(other), m_thrown(nullptr) {}
  CallFailed& operator=(const CallFailed&) = delete;
  ~CallFailed() override = default;

  bool isTheOneThrown() const { return m_thrown == this; }

 private:
  const CallFailed* m_thrown;
};

/// The calls that an operation made on the objects it was given, in order. One of them can be made
/// to fail.
class CallLog {
 public:
  /// Forgets the calls; the one at position `call`, counted from 0, will throw.
  void failAt(std::size_t call, Failure failure = Failure::StandardException) {
    reset();
    m_failing = call;
    m_failure = failure;
  }

  /// Forgets the calls and lets none fail.
  void reset() {
    m_calls.clear();
    m_failing.reset();
  }

  void note(const std::string& call) {
    m_calls.push_back(call);
    if (m_failing != m_calls.size() - 1) {
      return;
    }
    switch (m_failure) {
      case Failure::StandardException:
        throw CallFailed(call);
      case Failure::InvalidCall:
        throw object_model::InvalidCall("failed at " + call);
      case Failure::Number:
        throw 42;
    }
  }

  const std::vector<std::string>& calls() const { return m_calls; }

 private:
  std::vector<std::string> m_calls;
  std::optional<std::size_t> m_failing;
  Failure m_failure = Failure::StandardException;
};

}  // namespace test
