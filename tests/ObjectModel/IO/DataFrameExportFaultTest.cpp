#include <gtest/gtest.h>
#include <object_model/IO.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <memory>

#include "PlainExport.h"
#include "support/FaultInjection.h"
#include "support/Recording.h"
#include "support/RecordingDataFrame.h"
#include "support/TableText.h"

namespace object_model {
namespace {

using quillon::memory::Axis;
using Entries = quillon::memory::Dictionary;
using test::Calls;

/// An export of recorded entries into a table that is not empty.
class FaultyExport : public test::FaultyOperation {
 public:
  FaultyExport(Entries& entries, std::vector<std::string> indexNames)
      : m_entries(test::record(entries, "in", log())), m_indexNames(std::move(indexNames)) {
    noteTables(entries);
  }

  void renew() override { m_frame = filledFrame(log()); }
  void run() override {
    exportToDataFrame(*m_entries->asDictionary(), m_frame.get(), m_indexNames);
  }
  std::string result() const override { return test::tableText(m_frame->frame()); }

  std::string endOfFailingCall(const Calls& calls, const std::string& passedOn) override {
    const Calls before(calls.begin(), calls.end() - 1);
    return test::shown(passedOn, tableAfter(before));
  }
  std::vector<std::string> leftWithoutMemory(const Calls& calls) override {
    return {tableAfter(calls)};
  }

 private:
  static std::unique_ptr<test::RecordingDataFrame> filledFrame(test::CallLog& log) {
    auto frame = std::make_unique<test::RecordingDataFrame>(log);
    frame->frame().addRows(0, 2);
    frame->frame().addColumn("old", tabra::DataType(tabra::DataTypeId::Int64));
    frame->frame().addColumn("older", tabra::DataType(tabra::DataTypeId::Float64));
    return frame;
  }

  /// Takes down the table that the plain export leaves when each of its calls on it fails.
  void noteTables(Entries& entries) {
    test::CallLog frameLog;
    for (std::size_t call = 0; call == 0 || call <= frameLog.calls().size(); ++call) {
      const auto frame = filledFrame(frameLog);
      frameLog.failAt(call);
      test::endOf([&] { test::plainExport(entries, *frame, m_indexNames); });
      m_tables.push_back(test::tableText(frame->frame()));
      if (frameLog.calls().size() == call) {
        return;
      }
    }
  }

  /// A call on the table acts, a call on the entries does not.
  std::string tableAfter(const Calls& calls) const {
    const auto isOnTable = [](const std::string& call) {
      return call.rfind("in.", 0) != 0 && call.rfind("in/", 0) != 0;
    };
    return m_tables.at(
        static_cast<std::size_t>(std::count_if(calls.begin(), calls.end(), isOnTable)));
  }

  std::unique_ptr<Data> m_entries;
  std::vector<std::string> m_indexNames;
  std::vector<std::string> m_tables;  // after 0, 1, 2, ... calls on the table
  std::unique_ptr<test::RecordingDataFrame> m_frame;
};

template <class T>
void add(Entries& entries, const std::string& name, const std::vector<Axis>& axes) {
  std::size_t count = 1;
  for (const Axis& axis : axes) {
    count *= axis.size();
  }
  std::vector<T> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = static_cast<T>(i);
  }
  entries.add(quillon::memory::TypedArray<T>(name, axes, values)).setUnit("a unit of " + name);
}

/// Entries of all types and shapes that give columns, and of some that give none.
Entries everything() {
  Entries entries("entries");
  add<long>(entries, "line", {{AxisType::Time, 2}});
  add<double>(entries, "a plane with a long name", {{AxisType::Time, 2}, {AxisType::Channel, 2}});
  add<unsigned long>(entries, "turned", {{AxisType::Channel, 2}, {AxisType::Time, 2}});
  add<double>(entries, "block", {{"an axis with a long name", 2}, {"b", 1}, {AxisType::Time, 2}});
  add<long>(entries, "without time", {{AxisType::Slice, 2}});
  add<long>(entries, "twice", {{AxisType::Time, 2}, {AxisType::Time, 2}});
  entries.add(Entries("no array"));
  add<long>(entries, "no dimensions", {});
  add<long>(entries, "four dimensions", {{"a", 1}, {"b", 1}, {"c", 1}, {"d", 1}});
  return entries;
}

class EveryFaultOfAnExport : public ::testing::Test {
 protected:
  void inject(Entries& entries, const std::vector<std::string>& indexNames) {
    FaultyExport operation(entries, indexNames);
    const test::Faults faults = test::injectEveryFault(operation);
    m_faults.calls += faults.calls;
    m_faults.allocations += faults.allocations;
  }

  void TearDown() override { report(m_faults); }

  test::Faults m_faults;
};

TEST_F(EveryFaultOfAnExport, LeavesTheTableAsFarAsItWas) {
  Entries entries = everything();
  inject(entries, {});
  inject(entries, {"time"});
  inject(entries, {"time", "channel"});
  inject(entries, {"channel", "time"});
  inject(entries, {"slice", "time", "an axis with a long name"});
  inject(entries, {"time", "slice", "channel", "b"});
  inject(entries, {"an index that no entry of these has"});
  inject(entries, {"time", "time"});
}

TEST_F(EveryFaultOfAnExport, OfNothingLeavesTheTableAsFarAsItWas) {
  Entries nothing("nothing");
  inject(nothing, {});
  inject(nothing, {"time"});
  Entries empty("empty");
  add<long>(empty, "empty", {{"t", 0}, {"u", 2}});
  inject(empty, {"t"});
  inject(empty, {"u"});
}

TEST_F(EveryFaultOfAnExport, ThatIsRefusedLeavesTheTableUntouched) {
  Entries disagreeing("disagreeing");
  add<long>(disagreeing, "two", {{"t", 2}});
  add<long>(disagreeing, "three", {{"t", 3}});
  inject(disagreeing, {"t"});
  Entries texts("texts");
  add<long>(texts, "two", {{"t", 2}});
  texts.add(quillon::memory::StringArray("texts", {{"t", 1}}, {"text"}));
  inject(texts, {});
}

}  // namespace
}  // namespace object_model
