#pragma once

#include <object_model/Data.h>

#include <memory>
#include <string>

#include "support/CallLog.h"

namespace test {

/// Shows another array or dictionary, with all that is in it, and notes each call: on the object,
/// on its descriptor and on its axes. `data` and `log` must outlive it. Calls are noted as `label`
/// and the operation, such as "1:root/x.size". What the calls need themselves is spared when
/// allocations fail (see Allocations.h).
std::unique_ptr<object_model::Data> record(const object_model::Data& data, std::string label,
                                           CallLog& log);

}  // namespace test
