#pragma once

#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/Dictionary.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/TupleX.h>

#include <complex>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon::test {

/// What a call fails with.
enum class Failure { StandardException, InvalidCall, Number };

/// The calls that a comparison made on the objects it was given, in order. One of them can be made
/// to fail.
class CallLog {
 public:
  /// Forgets the calls; the one at position `call`, counted from 0, will throw.
  void failAt(std::size_t call, Failure failure);
  /// Forgets the calls and lets none fail.
  void reset();

  void note(const std::string& call);
  const std::vector<std::string>& calls() const { return m_calls; }

 private:
  std::vector<std::string> m_calls;
  std::optional<std::size_t> m_failing;
  Failure m_failure = Failure::StandardException;
};

/// Shows another array or dictionary, with all that is in it, and notes each call. `data` and `log`
/// must outlive it. Calls are noted as `label` and the operation, such as "1:root/x.size".
std::unique_ptr<object_model::Data> record(const object_model::Data& data, std::string label,
                                           CallLog& log);

/// What neither kind of recorder is asked for.
template <class Base>
class RecordingData : public Base {
 public:
  RecordingData(std::string label, CallLog& log) : m_label(std::move(label)), m_log(log) {}

  const object_model::Data* parent() const override { return nullptr; }
  object_model::Data* parent() override { return nullptr; }
  void setParent(object_model::Data* /*parent*/) override {}
  bool isDictionary() const override {
    note("isDictionary");
    return Base::isDictionary();
  }

 protected:
  void note(const std::string& operation) const { m_log.note(m_label + "." + operation); }

  const object_model::Data* wrap(const object_model::Data* inner, const std::string& step) const {
    auto& wrapped = m_wrapped[inner];
    if (wrapped == nullptr && inner != nullptr) {
      wrapped = record(*inner, m_label + step, m_log);
    }
    return wrapped.get();
  }

  std::string m_label;
  CallLog& m_log;

 private:
  mutable std::map<const object_model::Data*, std::unique_ptr<object_model::Data>> m_wrapped;
};

}  // namespace quillon::test
