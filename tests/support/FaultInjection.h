#pragma once

#include <gmock/gmock.h>
#include <object_model/InvalidCall.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "support/Allocations.h"
#include "support/CallLog.h"

namespace test {

using Calls = std::vector<std::string>;

/// An operation of the library in which everything that can fail is made to fail, one thing at a
/// time: each call that it makes on its caller's objects, and each allocation of its own.
class FaultyOperation {
 public:
  FaultyOperation() = default;
  FaultyOperation(const FaultyOperation&) = delete;
  FaultyOperation& operator=(const FaultyOperation&) = delete;
  virtual ~FaultyOperation() = default;

  /// Brings the objects that the operation changes back to their first state.
  virtual void renew() = 0;

  /// Runs the operation, and does nothing else that allocates.
  virtual void run() = 0;

  /// All that the last run returned and left behind.
  virtual std::string result() const = 0;

  /// How the operation ends, and what it leaves behind, when that call fails. `passedOn` is the end
  /// when the exception arrives.
  virtual std::string endOfFailingCall(const Calls& calls, const std::string& passedOn) = 0;

  /// Everything that may be left behind when memory runs out after these calls.
  virtual std::vector<std::string> leftWithoutMemory(const Calls& calls) = 0;

  CallLog& log() { return m_log; }

 private:
  CallLog m_log;
};

/// How many things failed, one after the other.
struct Faults {
  std::size_t calls = 0;
  std::size_t allocations = 0;
};

/// Runs the operation. Empty when it returned, else what it threw.
inline std::string endOf(const std::function<void()>& run) {
  try {
    run();
  } catch (const CallFailed& failure) {
    const SparedAllocations spared;
    return (failure.isTheOneThrown() ? "" : "(a copy) ") + std::string(failure.what());
  } catch (const object_model::InvalidCall& error) {
    const SparedAllocations spared;
    return "InvalidCall: " + error.what();
  } catch (const std::exception& error) {
    const SparedAllocations spared;
    return error.what();
  }
  return "";
}

inline std::string endOf(FaultyOperation& operation) {
  return endOf([&] { operation.run(); });
}

/// What is seen of a run: how it ended and what it left.
inline std::string shown(const std::string& end, const std::string& left) {
  return end + "\n" + left;
}

/// Runs the operation with each of its calls and each of its allocations failing in turn, and
/// expects each time that
/// - the exception that was thrown arrives, the object itself, or what the operation promises,
/// - all is left as the operation promises,
/// - no memory is left over,
/// - the operation succeeds when it is run once more, on what it left behind.
inline Faults injectEveryFault(FaultyOperation& operation) {
  CallLog& log = operation.log();
  const auto runUndisturbed = [&] {
    log.reset();
    const std::string end = endOf(operation);
    return shown(end, operation.result());
  };
  const auto leftOver = [&](const auto& disturb) {
    operation.renew();
    log.reset();
    const long before = liveBlocks();
    disturb();
    operation.renew();
    log.reset();
    return liveBlocks() - before;
  };
  operation.renew();
  const std::string expected = runUndisturbed();
  const Calls calls = log.calls();

  Faults faults;
  for (std::size_t call = 0; call < calls.size(); ++call) {
    const Calls made(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(call) + 1);
    const std::string promised = operation.endOfFailingCall(made, "failed at " + calls[call]);
    const auto disturb = [&] {
      log.failAt(call);
      const std::string end = endOf(operation);
      EXPECT_EQ(shown(end, operation.result()), promised) << "at " << calls[call];
      EXPECT_EQ(runUndisturbed(), expected) << "after " << calls[call] << " had failed";
    };
    EXPECT_EQ(leftOver(disturb), 0) << "after " << calls[call] << " had failed";
    ++faults.calls;
  }

  for (bool failed = true; failed;) {
    const auto disturb = [&] {
      failAllocation(static_cast<long>(faults.allocations));
      const std::string end = endOf(operation);
      failed = hasAllocationFailed();
      failNoAllocation();
      if (!failed) {
        EXPECT_EQ(shown(end, operation.result()), expected);
        return;
      }
      EXPECT_EQ(end, "std::bad_alloc") << "allocation " << faults.allocations;
      EXPECT_THAT(operation.leftWithoutMemory(log.calls()), ::testing::Contains(operation.result()))
          << "allocation " << faults.allocations;
      EXPECT_EQ(runUndisturbed(), expected) << "after allocation " << faults.allocations;
    };
    EXPECT_EQ(leftOver(disturb), 0) << "after allocation " << faults.allocations;
    faults.allocations += failed ? 1 : 0;
  }
  return faults;
}

/// An operation that calls nobody and either succeeds or leaves everything as it was.
class AllOrNothing : public FaultyOperation {
 public:
  using Step = std::function<void()>;

  AllOrNothing(Step renew, Step run, std::function<std::string()> result)
      : m_renew(std::move(renew)), m_run(std::move(run)), m_result(std::move(result)) {
    m_renew();
    m_first = m_result();
  }

  void renew() override { m_renew(); }
  void run() override { m_run(); }
  std::string result() const override { return m_result(); }
  std::string endOfFailingCall(const Calls& /*calls*/, const std::string& passedOn) override {
    return shown(passedOn, m_first);
  }
  std::vector<std::string> leftWithoutMemory(const Calls& /*calls*/) override { return {m_first}; }

 private:
  Step m_renew;
  Step m_run;
  std::function<std::string()> m_result;
  std::string m_first;
};

/// Tells the test's report, and whoever looks on, how much failed.
inline void report(const Faults& faults) {
  ::testing::Test::RecordProperty("failing_calls", static_cast<int>(faults.calls));
  ::testing::Test::RecordProperty("failing_allocations", static_cast<int>(faults.allocations));
  std::cout << "[  FAULTS  ] " << faults.calls << " calls and " << faults.allocations
            << " allocations failed in turn\n";
}

}  // namespace test
