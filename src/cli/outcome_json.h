#pragma once

#include <string>
#include <string_view>

#include "analysis/analysis_result.h"

namespace zento {

// An analysis for other programs: an object of
//   command, file    as given;
//   refusal          why there is no result, or null;
//   quantities       by name: value, unit ("" for a pure number), error (standard error, or null);
//   columns, rows    the table: name and unit of each column, and its rows of numbers;
//   fit              points, r_squared, slope, slope_error, intercept, intercept_error; the last
//                    two null for a line through the origin; null where no line was fitted.
// Numbers read back to the same double; what is no number is null. Ends with a line end.
std::string OutcomeJson(std::string_view command, std::string_view file,
                        const AnalysisResult& outcome);

}  // namespace zento
