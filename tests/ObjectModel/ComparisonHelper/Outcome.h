#pragma once

#include <object_model/InvalidCall.h>

#include <exception>
#include <optional>
#include <ostream>
#include <string>
#include <typeinfo>
#include <utility>

namespace quillon::test {

/// What a caller of a comparison gets to see: its result or what it threw, and the message.
struct Outcome {
  std::optional<bool> same;  ///< nothing when it threw
  std::string thrown;        ///< empty when it returned
  std::string message;
};

inline const std::string UNTOUCHED = "(as it was)";

inline Outcome same() { return {true, "", UNTOUCHED}; }
inline Outcome differs(std::string message) { return {false, "", std::move(message)}; }
inline Outcome throws(std::string thrown, std::string message = UNTOUCHED) {
  return {std::nullopt, std::move(thrown), std::move(message)};
}
/// What a comparison type or element type outside its enumeration raises.
inline Outcome rejectedAtLine(int line) {
  return throws(
      "object_model::InvalidCall: Invalid call at ObjectModel/src/ComparisonHelper.cpp (" +
      std::to_string(line) + ")");
}

inline bool operator==(const Outcome& a, const Outcome& b) {
  return a.same == b.same && a.thrown == b.thrown && a.message == b.message;
}

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << (outcome.same ? (*outcome.same ? "same" : "different") : "thrown: ")
             << outcome.thrown << ", message: " << outcome.message;
}

/// Runs `compare(message)`, where `message` is null unless `explains`.
template <class Compare>
Outcome outcomeOf(const Compare& compare, bool explains = true) {
  Outcome outcome = {std::nullopt, "", UNTOUCHED};
  try {
    outcome.same = compare(explains ? &outcome.message : nullptr);
  } catch (const object_model::InvalidCall& exception) {
    outcome.thrown = "object_model::InvalidCall: " + exception.what();
  } catch (const std::bad_cast& /*exception*/) {
    outcome.thrown = "std::bad_cast";
  } catch (const std::exception& exception) {
    outcome.thrown = exception.what();
  } catch (int number) {
    outcome.thrown = "the number " + std::to_string(number);
  }
  return outcome;
}

}  // namespace quillon::test
