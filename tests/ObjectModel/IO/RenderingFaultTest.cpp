#include <object_model/IO.h>

#include "support/FaultInjection.h"
#include "support/RenderingTest.h"
#include "support/TableText.h"

namespace object_model {
namespace {

using Render = std::string (*)(std::shared_ptr<tabra::DataFrameView>, unsigned long);

/// One rendering of a recorded table.
class FaultyRendering : public test::FaultyOperation {
 public:
  FaultyRendering(Render render, unsigned long columns, unsigned long rows, unsigned long maxRows)
      : m_render(render), m_maxRows(maxRows) {
    constexpr std::array<unsigned int, 4> TYPES = {0x10140, 0x30140, 0x20140, 0x99};
    tabra::MemoryDataFrame& table = m_frame->frame();
    table.addRows(0, rows);
    const std::vector<long> values(rows, 1234567);
    for (unsigned long i = 0; i < columns; ++i) {
      table.addColumn("a column with a long name, number " + std::to_string(i),
                      tabra::DataType(static_cast<tabra::DataTypeId>(TYPES[i % TYPES.size()])));
      table.write(i, 0, rows, values.data());
    }
  }

  void renew() override { std::string().swap(m_text); }
  void run() override {
    m_text.clear();
    m_text = m_render(m_frame, m_maxRows);
  }
  std::string result() const override { return m_text + test::tableText(m_frame->frame()); }

  std::string endOfFailingCall(const test::Calls& /*calls*/, const std::string& passedOn) override {
    return test::shown(passedOn, test::tableText(m_frame->frame()));
  }
  std::vector<std::string> leftWithoutMemory(const test::Calls& /*calls*/) override {
    return {test::tableText(m_frame->frame())};
  }

 private:
  Render m_render;
  unsigned long m_maxRows;
  std::shared_ptr<test::RecordingDataFrame> m_frame =
      std::make_shared<test::RecordingDataFrame>(log());
  std::string m_text;
};

test::Faults injectIntoRenderings() {
  test::Faults faults;
  for (const Render render : {&exportDataFrameToString, &exportDataFrameToHtml}) {
    for (const unsigned long columns : {0UL, 1UL, 2UL, 5UL}) {
      for (const unsigned long rows : {0UL, 1UL, 40UL}) {
        for (const unsigned long maxRows : {0UL, 1UL, 39UL, 41UL}) {
          FaultyRendering operation(render, columns, rows, maxRows);
          const test::Faults more = test::injectEveryFault(operation);
          faults.calls += more.calls;
          faults.allocations += more.allocations;
        }
      }
    }
  }
  return faults;
}

TEST(EveryFaultOfARendering, YieldsTheFaultAndNoText) { report(injectIntoRenderings()); }

TEST(EveryFaultOfARendering, YieldsTheFaultAndNoTextUnderAnotherLocale) {
  const test::GermanLocale german;
  report(injectIntoRenderings());
}

}  // namespace
}  // namespace object_model
