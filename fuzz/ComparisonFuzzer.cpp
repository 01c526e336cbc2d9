// The law: whatever two arrays or dictionaries hold, and whichever call on them fails, neither the
// caller nor the two can tell the library's comparison from the plain one, which spells out every
// rule: the same result, message and exception, and the same calls in the same order.

#include <object_model/ComparisonHelper.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <ostream>
#include <utility>

#include "Input.h"
#include "Law.h"
#include "ObjectModel/ComparisonHelper/Palette.h"
#include "ObjectModel/ComparisonHelper/PlainComparison.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Recording.h"

namespace quillon::fuzz {
namespace {

using object_model::Data;
using ::test::CallLog;
using ::test::Failure;

constexpr unsigned long MOST_ELEMENTS = 64;  // of one array

/// Makes arrays and dictionaries of an input.
class Tree {
 public:
  explicit Tree(Input input) : m_input(std::move(input)) {}

  std::unique_ptr<Data> array(const std::string& name, int depth) {
    switch (m_input.below(depth > 0 ? 8 : 7)) {
      case 0:
        return typedArray<long>(name);
      case 1:
        return typedArray<unsigned long>(name);
      case 2:
        return typedArray<double>(name);
      case 3:
        return typedArray<std::complex<double>>(name);
      case 4:
        return typedArray<std::string>(name);
      case 5:
        return typedArray<bool>(name);
      case 6: {
        const int type = static_cast<int>(m_input.below(10)) - 1;
        return std::make_unique<test::UnreadableArray>(name, type, shape());
      }
      default:
        return dictionaryArray(name, depth - 1);
    }
  }

  memory::Dictionary dictionary(const std::string& name, int depth) {
    memory::Dictionary dictionary(name);
    std::vector<std::unique_ptr<Data>> entries(m_input.below(5));
    const bool reversed = m_input.oneIn(4);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      entries[i] = entry(m_input.oneIn(32) ? m_input.text(4) : std::string(1, "abcd"[i]), depth);
    }
    if (reversed) {
      std::reverse(entries.begin(), entries.end());
    }
    for (auto& entry : entries) {
      if (!dictionary.contains(entry->getName())) {
        dictionary.add(std::move(entry));
      }
    }
    return dictionary;
  }

  std::string name() { return m_input.oneIn(32) ? m_input.text(4) : "A"; }

 private:
  using Shape = std::vector<unsigned long>;

  Shape shape() {
    Shape shape(m_input.below(7));
    unsigned long elements = 1;
    for (unsigned long& extent : shape) {
      extent = m_input.below(16) / 4 + 1;
      extent = extent == 4 ? m_input.below(4) : extent;
      extent = elements * extent > MOST_ELEMENTS ? 1 : extent;
      elements *= extent;
    }
    return shape;
  }

  static unsigned long elementsOf(const Shape& shape) {
    return std::accumulate(shape.begin(), shape.end(), 1UL, std::multiplies<>());
  }

  template <class T>
  T value() {
    if constexpr (std::is_same_v<T, bool>) {
      return m_input.below(2) == 1;
    } else if constexpr (std::is_same_v<T, std::complex<double>>) {
      const double real = value<double>();
      return {real, value<double>()};
    } else if constexpr (std::is_same_v<T, std::string>) {
      const auto& texts = test::palette<std::string>();
      const std::size_t choice = m_input.byte();
      return choice < 192 ? texts[choice % texts.size()] : m_input.text(8);
    } else {
      return m_input.oneOf(test::palette<T>());
    }
  }

  template <class T>
  std::unique_ptr<Data> typedArray(const std::string& name) {
    const Shape shape = this->shape();
    std::vector<T> values(elementsOf(shape));
    std::generate(values.begin(), values.end(), [this] { return value<T>(); });
    return std::make_unique<memory::TypedArray<T>>(name, test::axes(shape), std::move(values));
  }

  std::unique_ptr<Data> dictionaryArray(const std::string& name, int depth) {
    const Shape shape = this->shape();
    std::vector<memory::Dictionary> items;
    for (unsigned long i = elementsOf(shape); i > 0; --i) {
      items.push_back(dictionary("item", depth));
    }
    return std::make_unique<memory::DictionaryArray>(name, test::axes(shape), std::move(items));
  }

  std::unique_ptr<Data> entry(const std::string& name, int depth) {
    if (depth > 0 && m_input.oneIn(3)) {
      return std::make_unique<memory::Dictionary>(dictionary(name, depth - 1));
    }
    return array(name, depth);
  }

  Input m_input;
};

/// What can be seen of one comparison.
struct Trace {
  test::Outcome outcome;
  std::vector<std::string> calls;
};

bool operator==(const Trace& a, const Trace& b) {
  return a.outcome == b.outcome && a.calls == b.calls;
}

std::ostream& operator<<(std::ostream& out, const Trace& trace) {
  out << trace.outcome;
  for (const std::string& call : trace.calls) {
    out << '\n' << call;
  }
  return out;
}

/// How the comparison is asked for.
struct Question {
  explicit Question(Input& input)
      : mode(test::MODES[input.oneIn(8) ? input.below(6) : input.below(3)]),
        tolerance(input.oneOf(test::TOLERANCES)),
        explains(!input.oneIn(4)),
        fails(input.oneIn(4)),
        failingCall(fails ? input.byte() : 0),
        failure(fails ? static_cast<Failure>(input.below(3)) : Failure::Number) {}

  test::ComparisonType mode;
  double tolerance;
  bool explains;
  bool fails;
  std::size_t failingCall;
  Failure failure;
};

template <class Compare>
Trace traceOf(CallLog& log, const Question& question, const Compare& compare) {
  log.reset();
  if (question.fails) {
    log.failAt(question.failingCall, question.failure);
  }
  const test::Outcome outcome = test::outcomeOf(compare, question.explains);
  return {outcome, log.calls()};
}

template <class Object, class Library, class Plain>
void requireNoneCanTell(const Question& question, const Object& a, const Object& b,
                        const Library& library, const Plain& plain) {
  CallLog log;
  const auto first = ::test::record(a, "1", log);
  const auto second = ::test::record(b, "2", log);
  const auto run = [&](const auto& compare) {
    return traceOf(log, question, [&](std::string* message) {
      return compare(dynamic_cast<const Object&>(*first), dynamic_cast<const Object&>(*second),
                     message);
    });
  };
  const Trace expected = run(plain);
  requireEqual(run(library), expected);
}

/// `compare` with the question's mode and tolerance.
template <class Compare>
auto asked(const Question& question, const Compare& compare) {
  return [&](const auto& first, const auto& second, std::string* message) {
    return compare(first, second, question.mode, question.tolerance, message);
  };
}

void compareArrays(const Question& question, Tree first, Tree second) {
  const auto a = first.array(first.name(), 1);
  const auto b = second.array(second.name(), 1);
  requireNoneCanTell<object_model::Array>(question, *a->asArray(), *b->asArray(),
                                          asked(question, object_model::helper::areSameArrays),
                                          asked(question, test::plain::areSameArrays));
}

void compareDictionaries(const Question& question, bool outlinesOnly, Tree first, Tree second) {
  const memory::Dictionary a = first.dictionary(first.name(), 2);
  const memory::Dictionary b = second.dictionary(second.name(), 2);
  if (outlinesOnly) {
    requireNoneCanTell<object_model::Dictionary>(question, a, b,
                                                 object_model::helper::areSimilarDictionaries,
                                                 test::plain::areSimilarDictionaries);
    return;
  }
  requireNoneCanTell<object_model::Dictionary>(
      question, a, b, asked(question, object_model::helper::areSameDictionaries),
      asked(question, test::plain::areSameDictionaries));
}

/// Both sides are made of the same bytes, but for a few that are patched in the second's: so they
/// are alike but for a few choices, wherever these stand.
void compare(Input input) {
  const unsigned long what = input.below(3);
  const Question question(input);
  std::vector<std::pair<std::size_t, std::uint8_t>> patches(input.below(4));
  for (auto& [position, value] : patches) {
    position = input.byte();
    value = input.byte();
  }
  const std::vector<std::uint8_t> first = input.rest();
  std::vector<std::uint8_t> second = first;
  for (const auto& [position, value] : patches) {
    if (position < second.size()) {
      second[position] = value;
    }
  }
  if (what == 0) {
    compareArrays(question, Tree(Input(first)), Tree(Input(second)));
  } else {
    compareDictionaries(question, what == 1, Tree(Input(first)), Tree(Input(second)));
  }
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  quillon::fuzz::compare(quillon::fuzz::Input(bytes, size));
  return 0;
}
