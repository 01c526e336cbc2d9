#pragma once

#include <object_model/InvalidCall.h>
#include <rapidcheck.h>

#include <exception>
#include <stdexcept>

#include "support/Liars.h"
#include "support/Properties.h"

namespace test {

/// Any whims: from some call on, answers that change all the time.
inline Whims anyWhims() {
  const auto truthfulCalls = pick(100);
  auto draws = *rc::gen::resize(rc::kNominalSize, rc::gen::container<std::vector<unsigned int>>(
                                                      67, rc::gen::inRange(0U, 10000U)));
  return {static_cast<std::size_t>(truthfulCalls), std::move(draws)};
}

/// Two dictionaries and two arrays that hold each other and lie about everything.
struct LyingInput {
  LyingInput() {
    for (LyingDictionary* dictionary : {&first, &second}) {
      dictionary->entries = {&firstArray, &secondArray, &second, &firstArray, nullptr};
    }
    for (LyingArray* array : {&firstArray, &secondArray}) {
      array->element = [this]() -> const object_model::Data* {
        return whims.oneOf<const object_model::Data*>({&first, &second, &firstArray, nullptr});
      };
    }
  }
  LyingInput(const LyingInput&) = delete;
  LyingInput& operator=(const LyingInput&) = delete;
  ~LyingInput() = default;

  /// Requires that the operation ends, in whatever way, and has stayed within its own memory, which
  /// the sanitizers watch, and the positions that it read within the shapes it was told.
  template <class Operation>
  void endures(const Operation& operation) {
    try {
      operation();
    } catch (const object_model::InvalidCall& /*error*/) {
    } catch (const std::logic_error& error) {
      RC_ASSERT(std::string(error.what()) != LyingArray::NO_SUCH_POSITION);
    } catch (const std::exception& /*error*/) {
    }
  }

  Whims whims = anyWhims();
  LyingArray firstArray{whims};
  LyingArray secondArray{whims};
  LyingDictionary first{whims};
  LyingDictionary second{whims};
};

}  // namespace test
