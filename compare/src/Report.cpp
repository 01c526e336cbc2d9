#include <quillon/compare/Report.h>

namespace quillon::compare {

const std::vector<std::string> RECORD_ATTRIBUTES = {
    "history", "date_created", "creation_date", "uuid", "tracking_id", "NCO", "CDO"};

const char* textOf(Reason reason) {
  switch (reason) {
    case Reason::Kind:
      return "kind";
    case Reason::Shape:
      return "shape";
    case Reason::Dimensions:
      return "dimensions";
    case Reason::ElementType:
      return "element type";
    case Reason::Unit:
      return "unit";
    case Reason::Attribute:
      return "attribute";
    case Reason::Values:
      return "values";
    case Reason::OnlyInFirst:
      return "only in the first";
    case Reason::OnlyInSecond:
      break;
  }
  return "only in the second";
}

}  // namespace quillon::compare
