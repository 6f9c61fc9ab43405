#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/line_fit.h"

namespace zento {

// One number of an analysis.
struct Quantity {
  std::string name;  // ASCII, for programs: "n", "jk", "viscosity"
  std::string unit;  // ASCII: "cm2/s"; empty for a pure number
  double value = 0;
  std::optional<double> error;  // standard error, in the same unit
};

// What an analysis found, for programs and for the line below the report; the report itself is the
// window's text.
struct AnalysisResult {
  // Why there is no result, as it was shown; empty when there is one.
  std::string refusal;
  std::vector<Quantity> quantities;
  // The numbers behind the report's table; each column as long as the others.
  struct Column {
    std::string name;
    std::string unit;
    std::vector<double> values;
  };
  std::vector<Column> columns;
  std::optional<LineQuality> fit;
};

// The fit's numbers and every quantity that has a standard error, six digits each, errors two:
//   12 points, R² 0.99987
//   slope 927.71 ± 0.52, intercept 2.4725 ± 0.061
//   n 3.981 ± 0.0022
// Empty when nothing was fitted.
std::string FitLineText(const AnalysisResult& result);

// A line of a report: its fields apart by tabs, CR LF at the end.
std::string ReportLine(std::initializer_list<std::string_view> fields);

}  // namespace zento
