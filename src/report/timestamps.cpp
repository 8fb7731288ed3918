#include "report/timestamps.h"

namespace kestrova::report {

std::string nanosecondsText(const Date& date) { return std::to_string(date.time_since_epoch().count()); }

}  // namespace kestrova::report
